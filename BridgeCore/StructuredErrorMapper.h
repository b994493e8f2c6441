// Turns whatever was thrown into the error that a client receives. Stateless; it never fails.
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

}  // namespace velmora
