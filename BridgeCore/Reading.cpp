#include "BridgeCore/Reading.h"

#include <algorithm>

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/Text.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

namespace {

constexpr auto readingTool = wireName(ToolName::readOutput);

TerminalSession readable(TerminalSessionService& sessions, const SessionPermissionService& permissions,
                         const Uuid& sessionId, std::string_view tool, const Caller& caller) {
  auto session = sessions.validate(sessionId, tool, caller);
  if (!permissions.canRead(session)) throw catalogue::sessionNotAllowed(tool, session.reference());
  return session;
}

}  // namespace

bool LimitedOutput::truncated() const { return characterCount(text) < originalCharacterCount; }

LimitedOutput OutputLimiter::suffix(std::string_view text, std::int64_t maximumCharacters) {
  const auto end = lastCharacters(text, maximumCharacters);
  return {std::string(end.text), end.totalCharacters};
}

OutputReading OutputService::read(const ReadOutputInput& input, const Caller& arriving) {
  input.validate();
  Caller caller = arriving;
  auto session = readable(sessions_, permissions_, input.sessionId, readingTool, caller);
  std::optional<bool> met;
  if (input.waitSeconds.value_or(0) > 0) {
    met = wait_.wait(input, session, caller);
    caller = caller.asOfNow();
    session = readable(sessions_, permissions_, input.sessionId, readingTool, caller);
  }
  OutputFound found;
  try {
    found = find(input, session, caller);
  } catch (const StructuredError&) {
    throw;
  } catch (const std::exception&) {
    throw catalogue::outputUnavailable(session.reference());
  }

  auto& output = found.output;
  const auto end = lastCharacters(output.text, input.maxCharacters);
  const auto returned = std::min(end.totalCharacters, input.maxCharacters);
  output.text.erase(0, output.text.size() - end.text.size());
  const bool truncated = returned < output.originalCharacterCount;
  OutputReading reading{{.sessionId = session.sessionId,
                         .source = input.source,
                         .text = std::move(output.text),
                         .returnedCharacters = returned,
                         .truncated = truncated,
                         .session = caller.extended ? std::optional(SessionState(session)) : std::nullopt,
                         .met = met,
                         .cursor = std::move(found.cursor),
                         .cursorLost = input.after ? std::optional(found.cursorLost) : std::nullopt},
                        {}};
  if (truncated) {
    reading.warnings.push_back(StructuredErrorMapper::warningForTruncation(readingTool, session.reference()));
  }
  return reading;
}

OutputFound OutputService::find(const ReadOutputInput& input, const TerminalSession& session,
                                const Caller& caller) {
  if (!caller.extended) {
    return {.output = answerOf(automation_.readOutput(input.source, input.maxCharacters, session.tty,
                                                      session.windowId, caller),
                               readingTool, session.reference())};
  }
  return answerOf(automation_.readAs({.source = input.source,
                                      .maxCharacters = input.maxCharacters,
                                      .after = input.after,
                                      .format = input.format.value_or(OutputFormat::plain)},
                                     session.tty, session.windowId, caller),
                  readingTool, session.reference());
}

CapturePayload CaptureService::capture(const SessionTargetInput& input, const Caller& caller) {
  constexpr auto tool = wireName(ToolName::captureScreen);
  const auto session = readable(sessions_, permissions_, input.sessionId, tool, caller);
  try {
    const auto capture =
        answerOf(automation_.captureScreen(session.tty, session.windowId, caller), tool, session.reference());
    return CapturePayload(session.sessionId, capture.imagePath, now_());
  } catch (const StructuredError&) {
    throw;
  } catch (const std::exception&) {
    throw catalogue::screenCaptureUnavailable(session.reference());
  }
}

}  // namespace velmora
