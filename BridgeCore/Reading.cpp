#include "BridgeCore/Reading.h"

#include <algorithm>

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/Text.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

namespace {

TerminalSession readable(TerminalSessionService& sessions, const SessionPermissionService& permissions,
                         const Uuid& sessionId, std::string_view operation, const Caller& caller) {
  auto session = sessions.validate(sessionId, operation, caller);
  if (!permissions.canRead(session)) throw catalogue::sessionNotAllowed(operation, session.reference());
  return session;
}

}  // namespace

bool LimitedOutput::truncated() const { return characterCount(text) < originalCharacterCount; }

LimitedOutput OutputLimiter::suffix(std::string_view text, std::int64_t maximumCharacters) {
  const auto end = lastCharacters(text, maximumCharacters);
  return {std::string(end.text), end.totalCharacters};
}

OutputReading OutputService::read(const ReadOutputInput& input, const Caller& caller) {
  constexpr auto operation = wireName(ToolName::readOutput);
  input.validate();
  const auto session = readable(sessions_, permissions_, input.sessionId, operation, caller);
  TerminalOutput output;
  try {
    output = answerOf(
        automation_.readOutput(input.source, input.maxCharacters, session.tty, session.windowId, caller),
        operation, session.reference());
  } catch (const StructuredError&) {
    throw;
  } catch (const std::exception&) {
    throw catalogue::outputUnavailable(session.reference());
  }

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

CapturePayload CaptureService::capture(const SessionTargetInput& input, const Caller& caller) {
  constexpr auto operation = wireName(ToolName::captureScreen);
  const auto session = readable(sessions_, permissions_, input.sessionId, operation, caller);
  try {
    const auto capture = answerOf(automation_.captureScreen(session.tty, session.windowId, caller), operation,
                                  session.reference());
    return CapturePayload(session.sessionId, capture.imagePath, now_());
  } catch (const StructuredError&) {
    throw;
  } catch (const std::exception&) {
    throw catalogue::screenCaptureUnavailable(session.reference());
  }
}

}  // namespace velmora
