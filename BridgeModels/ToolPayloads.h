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

struct CommandPayload {
  Uuid sessionId{};
  std::string deliveryStatus = deliveredToTerminal;
  Date deliveredAt{};

  CommandPayload() = default;
  CommandPayload(const Uuid& session, Date delivered) : sessionId(session), deliveredAt(delivered) {}
  bool operator==(const CommandPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(CommandPayload, (), (sessionId, deliveryStatus, deliveredAt))

struct KeyPayload {
  Uuid sessionId{};
  TerminalKey key = TerminalKey::return_;
  std::int64_t repeatCount = 1;
  std::string deliveryStatus = deliveredToTerminal;
  Date deliveredAt{};

  KeyPayload() = default;
  KeyPayload(const Uuid& session, TerminalKey pressed, std::int64_t times, Date delivered)
      : sessionId(session), key(pressed), repeatCount(times), deliveredAt(delivered) {}
  bool operator==(const KeyPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(KeyPayload, (), (sessionId, key, repeatCount, deliveryStatus, deliveredAt))

struct OutputPayload {
  Uuid sessionId{};
  OutputSource source = OutputSource::visible;
  std::string text{};
  std::int64_t returnedCharacters = 0;
  bool truncated = false;
  bool operator==(const OutputPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(OutputPayload, (), (sessionId, source, text, returnedCharacters, truncated))

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

  bool operator==(const ToolResult&) const = default;
  BOOST_DESCRIBE_CLASS(ToolResult, (), (requestId, ok, data, warnings, error), (), ())
};

}  // namespace velmora
