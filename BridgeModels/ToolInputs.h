// The typed input of each tool. Decoding fills defaults only; `validate()` checks ranges before any
// automation runs and throws ToolValidationError.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/IntegerRange.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/Uuid.h"

namespace velmora {

BOOST_DEFINE_ENUM_CLASS(SessionCreationKind, window, tab)

// Those after pageDown belong to the extended form.
BOOST_DEFINE_ENUM_CLASS(TerminalKey, upArrow, downArrow, leftArrow, rightArrow, return_, escape, tab, delete_,
                        forwardDelete, home, end, pageUp, pageDown, enter, backspace, space, shiftTab, insert,
                        f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, controlA, controlB, controlC,
                        controlD, controlE, controlF, controlG, controlK, controlL, controlN, controlO,
                        controlP, controlQ, controlR, controlS, controlU, controlV, controlW, controlX,
                        controlZ)
namespace detail {

inline constexpr auto everyKey = casesOf<TerminalKey>(boost::describe::describe_enumerators<TerminalKey>{});
inline constexpr auto plainKeys = static_cast<std::size_t>(TerminalKey::pageDown) + 1;

}  // namespace detail

template <>
inline constexpr auto enumCases<TerminalKey> = detail::someOf<0, detail::plainKeys>(detail::everyKey);
template <>
inline constexpr auto extendedCases<TerminalKey> =
    detail::someOf<detail::plainKeys, detail::everyKey.size() - detail::plainKeys>(detail::everyKey);

constexpr bool isExtended(TerminalKey key) { return static_cast<std::size_t>(key) >= detail::plainKeys; }

/// An input outside its range; `what()` is the sentence for the client.
class ToolValidationError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  std::string message() const { return what(); }
};

/// The input of tools that take no arguments.
struct EmptyInput {
  bool operator==(const EmptyInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(EmptyInput, (), ())

struct SessionTargetInput {
  Uuid sessionId{};

  bool operator==(const SessionTargetInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(SessionTargetInput, (), (sessionId))

struct ListSessionsInput {
  bool includeReadOnly = true;
  bool includeBusy = true;

  bool operator==(const ListSessionsInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(ListSessionsInput, (), (includeReadOnly, includeBusy))
template <>
inline constexpr auto defaultedMembers<ListSessionsInput> = EveryMember{};

struct CreateSessionInput {
  static constexpr std::size_t maximumNameBytes = 64;
  static constexpr IntegerRange columnsRange{20, 500};
  static constexpr IntegerRange rowsRange{5, 200};

  SessionCreationKind kind = SessionCreationKind::window;
  std::optional<Uuid> inSessionId{};
  std::optional<std::string> name{};       ///< Letters, digits, "-" and "_".
  std::optional<std::string> directory{};  ///< Absolute.
  std::optional<std::int64_t> columns{};
  std::optional<std::int64_t> rows{};

  void validate() const;
  bool operator==(const CreateSessionInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(CreateSessionInput, (), (kind, inSessionId, name, directory, columns, rows))
template <>
inline constexpr auto defaultedMembers<CreateSessionInput> = std::tuple{&CreateSessionInput::kind};
template <>
inline constexpr auto extendedMembers<CreateSessionInput> =
    std::tuple{&CreateSessionInput::name, &CreateSessionInput::directory, &CreateSessionInput::columns,
               &CreateSessionInput::rows};

struct SendCommandInput {
  static constexpr std::size_t maximumCommandBytes = 65536;
  static constexpr IntegerRange waitSecondsRange{0, 45};
  static constexpr IntegerRange maxCharactersRange{1, 50000};
  static constexpr std::int64_t usualMaxCharacters = 4000;

  Uuid sessionId{};
  std::string command{};
  std::optional<bool> submit{};  ///< Absent means true; false types the text plainly, without Return.
  std::optional<std::int64_t> waitSeconds{};    ///< For the command's end; absent means that nobody waits.
  std::optional<std::int64_t> maxCharacters{};  ///< Of the output that a wait brings.

  void validate() const;
  bool operator==(const SendCommandInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(SendCommandInput, (), (sessionId, command, submit, waitSeconds, maxCharacters))
template <>
inline constexpr auto extendedMembers<SendCommandInput> =
    std::tuple{&SendCommandInput::submit, &SendCommandInput::waitSeconds, &SendCommandInput::maxCharacters};

struct SendKeyInput {
  static constexpr IntegerRange repeatCountRange{1, 50};

  Uuid sessionId{};
  TerminalKey key = TerminalKey::return_;
  std::int64_t repeatCount = 1;

  void validate() const;
  bool operator==(const SendKeyInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(SendKeyInput, (), (sessionId, key, repeatCount))
template <>
inline constexpr auto defaultedMembers<SendKeyInput> = std::tuple{&SendKeyInput::repeatCount};

// What a read waits for: a session that is not busy, a screen other than now, or a text.
BOOST_DEFINE_ENUM_CLASS(ReadUntil, idle, change, text)

// How text is returned: plainly, or with its colours, as escape sequences.
BOOST_DEFINE_ENUM_CLASS(OutputFormat, plain, ansi)

struct ReadOutputInput {
  static constexpr IntegerRange maxCharactersRange{1, 50000};
  static constexpr IntegerRange waitSecondsRange{0, 45};
  static constexpr std::size_t maximumWaitTextBytes = 1000;
  static constexpr std::size_t maximumCursorBytes = 100;

  Uuid sessionId{};
  OutputSource source = OutputSource::visible;
  std::int64_t maxCharacters = 12000;
  std::optional<std::int64_t> waitSeconds{};  ///< Before the text is read; absent means that nobody waits.
  std::optional<ReadUntil> until{};           ///< Absent means idle.
  std::optional<std::string> waitText{};      ///< One line, or part of one.
  std::optional<std::string> after{};         ///< The cursor of an earlier answer.
  std::optional<OutputFormat> format{};       ///< Absent means plain.

  void validate() const;
  bool operator==(const ReadOutputInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReadOutputInput, (),
                      (sessionId, source, maxCharacters, waitSeconds, until, waitText, after, format))
template <>
inline constexpr auto defaultedMembers<ReadOutputInput> =
    std::tuple{&ReadOutputInput::source, &ReadOutputInput::maxCharacters};
template <>
inline constexpr auto extendedMembers<ReadOutputInput> =
    std::tuple{&ReadOutputInput::waitSeconds, &ReadOutputInput::until, &ReadOutputInput::waitText,
               &ReadOutputInput::after, &ReadOutputInput::format};

}  // namespace velmora
