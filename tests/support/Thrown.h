// Runs `work` and returns the error that it must throw.
#pragma once

#include <gtest/gtest.h>

#include "BridgeModels/StructuredError.h"

namespace velmora::testing {

/// Records a test failure, and returns a default error, when nothing of type `Error` comes.
template <class Error, class Work>
Error thrown(Work work) {
  try {
    work();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return Error{};
}

template <class Work>
StructuredError structuredError(Work work) {
  return thrown<StructuredError>(std::move(work));
}

}  // namespace velmora::testing
