// The error record that clients receive and history keeps. Services also throw it, by value.
#pragma once

#include <optional>
#include <string>

#include "BridgeModels/ErrorCode.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/Uuid.h"

namespace velmora {

/// A short pointer to a session, used in errors and history.
struct SessionReference {
  Uuid sessionId{};
  std::optional<std::string> title{};
  std::optional<std::string> tty{};

  bool operator==(const SessionReference&) const = default;
};
BOOST_DESCRIBE_STRUCT(SessionReference, (), (sessionId, title, tty))

struct StructuredError {
  ErrorCode code = ErrorCode::internalError;
  std::string message{};    ///< A sentence for people.
  std::string operation{};  ///< The tool's wire name, or the internal step that failed.
  std::optional<SessionReference> session{};
  bool retryable = false;  ///< Whether the same call may succeed later.
  std::string recoverySuggestion{};

  bool operator==(const StructuredError&) const = default;
};
BOOST_DESCRIBE_STRUCT(StructuredError, (), (code, message, operation, session, retryable, recoverySuggestion))

}  // namespace velmora
