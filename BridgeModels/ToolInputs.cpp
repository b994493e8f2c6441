#include "BridgeModels/ToolInputs.h"

#include <string_view>

namespace velmora {

void CreateSessionInput::validate() const {
  if (kind == SessionCreationKind::tab) {
    throw ToolValidationError(
        "Terminal.app's scripting dictionary cannot create tabs; create a window instead.");
  }
  if (inSessionId) throw ToolValidationError("inSessionId is not valid for window creation.");
  constexpr std::string_view nameCharacters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";
  if (name && (name->empty() || name->size() > maximumNameBytes || name->starts_with('-') ||
               name->find_first_not_of(nameCharacters) != std::string::npos)) {
    throw ToolValidationError(
        "name must be 1 to 64 letters, digits, \"_\" or \"-\", and not begin with \"-\".");
  }
  if (directory && (!directory->starts_with('/') || directory->find('\0') != std::string::npos)) {
    throw ToolValidationError("directory must be an absolute path.");
  }
  if (columns && !columnsRange.contains(*columns)) {
    throw ToolValidationError("columns must be between 20 and 500.");
  }
  if (rows && !rowsRange.contains(*rows)) throw ToolValidationError("rows must be between 5 and 200.");
}

void SendCommandInput::validate() const {
  if (command.empty()) throw ToolValidationError("Command must not be empty.");
  if (command.size() > maximumCommandBytes) throw ToolValidationError("Command exceeds 65536 UTF-8 bytes.");
  if (waitSeconds && !waitSecondsRange.contains(*waitSeconds)) {
    throw ToolValidationError("waitSeconds must be between 0 and 45.");
  }
  if (maxCharacters && !maxCharactersRange.contains(*maxCharacters)) {
    throw ToolValidationError("maxCharacters must be between 1 and 50000.");
  }
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
  if (waitSeconds && !waitSecondsRange.contains(*waitSeconds)) {
    throw ToolValidationError("waitSeconds must be between 0 and 45.");
  }
  if (waitText && until != ReadUntil::text) throw ToolValidationError("waitText needs until \"text\".");
  if (until == ReadUntil::text && !waitText) throw ToolValidationError("until \"text\" needs waitText.");
  if (until && waitSeconds.value_or(0) == 0) throw ToolValidationError("until needs waitSeconds, 1 to 45.");
  if (waitText && (waitText->empty() || waitText->size() > maximumWaitTextBytes ||
                   waitText->find_first_of("\r\n") != std::string::npos)) {
    throw ToolValidationError("waitText must be one line of 1 to 1000 bytes.");
  }
  constexpr std::string_view cursorCharacters = "0123456789abcdefghijklmnopqrstuvwxyz-";
  if (after && (after->empty() || after->size() > maximumCursorBytes ||
                after->find_first_not_of(cursorCharacters) != std::string::npos)) {
    throw ToolValidationError("after must be the cursor of an earlier answer.");
  }
}

}  // namespace velmora
