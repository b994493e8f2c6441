// Waits for the adapter's answer about one session.
#pragma once

#include <future>

#include "BridgeModels/TerminalSession.h"

namespace velmora {

/// An adapter knows no sessions; the error in its own words leaves here with the one that it is about.
template <class Result>
Result answerAbout(const TerminalSession& session, std::future<Result> answer) {
  try {
    return answer.get();
  } catch (StructuredError& error) {
    if (!error.session) error.session = session.reference();
    throw;
  }
}

}  // namespace velmora
