#include "BridgeModels/ToolInputs.h"

namespace velmora {

void CreateSessionInput::validate() const {
  if (kind == SessionCreationKind::tab) {
    throw ToolValidationError(
        "Terminal.app's scripting dictionary cannot create tabs; create a window instead.");
  }
  if (inSessionId) throw ToolValidationError("inSessionId is not valid for window creation.");
}

void SendCommandInput::validate() const {
  if (command.empty()) throw ToolValidationError("Command must not be empty.");
  if (command.size() > maximumCommandBytes) throw ToolValidationError("Command exceeds 65536 UTF-8 bytes.");
}

void SendKeyInput::validate() const {
  if (!repeatCountRange.contains(repeatCount)) {
    throw ToolValidationError("repeatCount must be between 1 and 50.");
  }
}

void ReadOutputInput::validate() const {
  if (!maxCharactersRange.contains(maxCharacters)) {
    throw ToolValidationError("maxCharacters must be between 1 and 50000.");
  }
}

}  // namespace velmora
