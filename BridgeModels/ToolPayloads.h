// The typed payload of each tool and the envelope that carries it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BridgeModels/BridgeStatus.h"
#include "BridgeModels/StructuredError.h"
#include "BridgeModels/TerminalSession.h"
#include "BridgeModels/ToolInputs.h"

namespace velmora {

/// The text or key reached the terminal; nothing is said of completion, success or an exit code.
inline constexpr const char* deliveredToTerminal = "delivered_to_terminal";

struct StatusPayload {
  BridgeStatus status{};
  bool operator==(const StatusPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(StatusPayload, (), (status))

struct SessionsPayload {
  std::vector<TerminalSession> sessions{};
  bool operator==(const SessionsPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(SessionsPayload, (), (sessions))

struct SessionPayload {
  TerminalSession session{};
  bool operator==(const SessionPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(SessionPayload, (), (session))

/// A session as a call left it. Extended form only.
struct SessionState {
  bool busy = false;
  std::string title{};
  SessionPermission permission = SessionPermission::managed;

  SessionState() = default;
  explicit SessionState(const TerminalSession& session)
      : busy(session.busy), title(session.title), permission(session.permission) {}
  bool operator==(const SessionState&) const = default;
};
BOOST_DESCRIBE_STRUCT(SessionState, (), (busy, title, permission))

// How a command that was waited for stands.
BOOST_DEFINE_ENUM_CLASS(CompletionState, finished, running, closed)

// What that is known from: the shell's own note, the system's process table and the terminal, or that nothing
// was seen in time.
BOOST_DEFINE_ENUM_CLASS(CompletionEvidence, shellIntegration, process, timeout)

/// What a wait for a command's end brought. Extended form only.
struct CommandCompletion {
  CompletionState state = CompletionState::running;
  CompletionEvidence evidence = CompletionEvidence::timeout;
  std::optional<std::int64_t> exitCode{};  ///< With the evidence `shellIntegration` alone.
  std::int64_t elapsedMilliseconds = 0;    ///< Since the delivery.
  std::optional<std::string> output{};     ///< What appeared since; its end when it is long.
  std::optional<bool> outputTruncated{};   ///< True, or absent.

  bool operator==(const CommandCompletion&) const = default;
};
BOOST_DESCRIBE_STRUCT(CommandCompletion, (),
                      (state, evidence, exitCode, elapsedMilliseconds, output, outputTruncated))

struct CommandPayload {
  Uuid sessionId{};
  std::string deliveryStatus = deliveredToTerminal;
  Date deliveredAt{};
  std::optional<SessionState> session{};
  std::optional<CommandCompletion> completion{};

  CommandPayload() = default;
  CommandPayload(const Uuid& target, Date delivered) : sessionId(target), deliveredAt(delivered) {}
  bool operator==(const CommandPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(CommandPayload, (), (sessionId, deliveryStatus, deliveredAt, session, completion))
template <>
inline constexpr auto extendedMembers<CommandPayload> =
    std::tuple{&CommandPayload::session, &CommandPayload::completion};

struct KeyPayload {
  Uuid sessionId{};
  TerminalKey key = TerminalKey::return_;
  std::int64_t repeatCount = 1;
  std::string deliveryStatus = deliveredToTerminal;
  Date deliveredAt{};
  std::optional<SessionState> session{};

  KeyPayload() = default;
  KeyPayload(const Uuid& target, TerminalKey pressed, std::int64_t times, Date delivered)
      : sessionId(target), key(pressed), repeatCount(times), deliveredAt(delivered) {}
  bool operator==(const KeyPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(KeyPayload, (), (sessionId, key, repeatCount, deliveryStatus, deliveredAt, session))
template <>
inline constexpr auto extendedMembers<KeyPayload> = std::tuple{&KeyPayload::session};

struct OutputPayload {
  Uuid sessionId{};
  OutputSource source = OutputSource::visible;
  std::string text{};
  std::int64_t returnedCharacters = 0;
  bool truncated = false;
  std::optional<SessionState> session{};
  std::optional<bool> met{};  ///< Whether what was waited for came in time; absent when nobody waited.
  std::optional<std::string>
      cursor{};  ///< For `after` in a later call; absent where nothing can be held on to.
  std::optional<bool>
      cursorLost{};  ///< Whether the text is not what is new; absent when nobody asked for that.
  bool operator==(const OutputPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(OutputPayload, (),
                      (sessionId, source, text, returnedCharacters, truncated, session, met, cursor,
                       cursorLost))
template <>
inline constexpr auto extendedMembers<OutputPayload> = std::tuple{
    &OutputPayload::session, &OutputPayload::met, &OutputPayload::cursor, &OutputPayload::cursorLost};

struct CapturePayload {
  Uuid sessionId{};
  std::string imagePath{};
  std::string mimeType = "image/png";
  Date capturedAt{};

  CapturePayload() = default;
  CapturePayload(const Uuid& session, std::string path, Date captured)
      : sessionId(session), imagePath(std::move(path)), capturedAt(captured) {}
  bool operator==(const CapturePayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(CapturePayload, (), (sessionId, imagePath, mimeType, capturedAt))

struct FocusPayload {
  Uuid sessionId{};
  Date focusedAt{};
  bool operator==(const FocusPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(FocusPayload, (), (sessionId, focusedAt))

/// The envelope of every tool call. `error` is present exactly when `ok` is false, `data` when it is true.
template <class Payload>
struct ToolResult {
  Uuid requestId{};
  bool ok = false;
  std::optional<Payload> data{};
  std::vector<StructuredError> warnings{};
  std::optional<StructuredError> error{};
  std::optional<bool> extended{};  ///< The answer is that of the extended form, as the request asked.

  bool operator==(const ToolResult&) const = default;
  BOOST_DESCRIBE_CLASS(ToolResult, (), (requestId, ok, data, warnings, error, extended), (), ())
};
template <class Payload>
inline constexpr auto extendedMembers<ToolResult<Payload>> = std::tuple{&ToolResult<Payload>::extended};

}  // namespace velmora
