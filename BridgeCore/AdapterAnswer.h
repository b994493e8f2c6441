// Waits for the adapter's answer. A header alone: it is a template.
#pragma once

#include <future>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "BridgeModels/StructuredError.h"

namespace velmora {

/// Adapters know neither tools nor sessions: an error in their own words gets `operation` and `session` here.
template <class Result>
Result answerOf(std::future<Result> answer, std::string_view operation,
                const std::optional<SessionReference>& session) {
  try {
    return answer.get();
  } catch (const StructuredError& error) {
    StructuredError complete = error;
    if (complete.operation.empty()) complete.operation = std::string(operation);
    if (!complete.session) complete.session = session;
    throw StructuredError(std::move(complete));
  }
}

}  // namespace velmora
