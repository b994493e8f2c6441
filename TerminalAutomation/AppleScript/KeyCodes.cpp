#include "TerminalAutomation/AppleScript/KeyCodes.h"

#include "TerminalAutomation/AppleScript/BrokenContract.h"

namespace velmora {

std::int32_t virtualKeyCode(TerminalKey key) {
  switch (key) {
    case TerminalKey::upArrow:
      return 126;
    case TerminalKey::downArrow:
      return 125;
    case TerminalKey::leftArrow:
      return 123;
    case TerminalKey::rightArrow:
      return 124;
    case TerminalKey::return_:
      return 36;
    case TerminalKey::escape:
      return 53;
    case TerminalKey::tab:
      return 48;
    case TerminalKey::delete_:
      return 51;
    case TerminalKey::forwardDelete:
      return 117;
    case TerminalKey::home:
      return 115;
    case TerminalKey::end:
      return 119;
    case TerminalKey::pageUp:
      return 116;
    case TerminalKey::pageDown:
      return 121;
    default:  // the core types those of the extended form as text
      break;
  }
  brokenContract("a key has no code");
}

}  // namespace velmora
