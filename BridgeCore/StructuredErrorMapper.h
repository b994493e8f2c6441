// Turns whatever was thrown into the error that a client receives, or into a sentence for the user.
// Stateless; it never fails.
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "BridgeModels/StructuredError.h"

namespace velmora {

struct StructuredErrorMapper {
  /// A StructuredError stays as it is; a validation or decoding failure becomes invalidArgument; of any other
  /// error only the platform's number counts.
  static StructuredError map(const std::exception_ptr& error, std::string_view operation,
                             const std::optional<SessionReference>& session);

  static StructuredError warningForTruncation(std::string_view operation, const SessionReference& session);

  static StructuredError invalidArgument(const std::string& message, std::string_view operation,
                                         const std::optional<SessionReference>& session);
};

/// What went wrong, in a sentence for the user: in the words of whoever noticed; of a structured error also
/// what to do about it.
std::string problemSentence(const std::exception_ptr& error);

}  // namespace velmora
