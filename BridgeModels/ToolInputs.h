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

BOOST_DEFINE_ENUM_CLASS(TerminalKey, upArrow, downArrow, leftArrow, rightArrow, return_, escape, tab, delete_,
                        forwardDelete, home, end, pageUp, pageDown)

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
  SessionCreationKind kind = SessionCreationKind::window;
  std::optional<Uuid> inSessionId{};

  void validate() const;
  bool operator==(const CreateSessionInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(CreateSessionInput, (), (kind, inSessionId))
template <>
inline constexpr auto defaultedMembers<CreateSessionInput> = std::tuple{&CreateSessionInput::kind};

struct SendCommandInput {
  static constexpr std::size_t maximumCommandBytes = 65536;

  Uuid sessionId{};
  std::string command{};

  void validate() const;
  bool operator==(const SendCommandInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(SendCommandInput, (), (sessionId, command))

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

struct ReadOutputInput {
  static constexpr IntegerRange maxCharactersRange{1, 50000};

  Uuid sessionId{};
  OutputSource source = OutputSource::visible;
  std::int64_t maxCharacters = 12000;

  void validate() const;
  bool operator==(const ReadOutputInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReadOutputInput, (), (sessionId, source, maxCharacters))
template <>
inline constexpr auto defaultedMembers<ReadOutputInput> =
    std::tuple{&ReadOutputInput::source, &ReadOutputInput::maxCharacters};

}  // namespace velmora
