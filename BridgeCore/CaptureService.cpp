#include "BridgeCore/CaptureService.h"

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

CapturePayload CaptureService::capture(const SessionTargetInput& input) {
  const auto session = sessions_.validate(input.sessionId);
  if (!permissions_.canRead(session)) {
    throw catalogue::sessionNotAllowed(wireName(ToolName::captureScreen), session.reference());
  }
  try {
    const auto capture = answerAbout(session, automation_.captureScreen(session.tty, session.windowId));
    return CapturePayload(session.sessionId, capture.imagePath, now_());
  } catch (const StructuredError&) {
    throw;
  } catch (const std::exception&) {
    throw catalogue::screenCaptureUnavailable(session.reference());
  }
}

}  // namespace velmora
