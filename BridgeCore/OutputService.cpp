#include "BridgeCore/OutputService.h"

#include <algorithm>

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/OutputLimiter.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

namespace {

TerminalOutput readFrom(TerminalAutomating& automation, const ReadOutputInput& input,
                        const TerminalSession& session) {
  try {
    return answerAbout(
        session, automation.readOutput(input.source, input.maxCharacters, session.tty, session.windowId));
  } catch (const StructuredError&) {
    throw;
  } catch (const std::exception&) {
    throw catalogue::outputUnavailable(session.reference());
  }
}

}  // namespace

OutputReading OutputService::read(const ReadOutputInput& input) {
  constexpr auto operation = wireName(ToolName::readOutput);
  input.validate();
  const auto session = sessions_.validate(input.sessionId);
  if (!permissions_.canRead(session)) throw catalogue::sessionNotAllowed(operation, session.reference());

  const auto output = readFrom(automation_, input, session);
  auto limited = OutputLimiter::suffix(output.text, input.maxCharacters);
  const auto returned = std::min(limited.originalCharacterCount, input.maxCharacters);
  const bool truncated = returned < output.originalCharacterCount;

  OutputReading reading{{.sessionId = session.sessionId,
                         .source = input.source,
                         .text = std::move(limited.text),
                         .returnedCharacters = returned,
                         .truncated = truncated},
                        {}};
  if (truncated) {
    reading.warnings.push_back(StructuredErrorMapper::warningForTruncation(operation, session.reference()));
  }
  return reading;
}

}  // namespace velmora
