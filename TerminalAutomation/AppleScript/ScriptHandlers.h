// The handlers of TerminalBridge.applescript: the script's half of the contract. scripts/checkAppleScript.py
// compares this table with the script.
#pragma once

#include <cstddef>
#include <string_view>

namespace velmora {

/// A handler and the number of its arguments.
template <std::size_t Arity>
struct ScriptHandler {
  std::string_view name;
};

namespace scriptHandler {
/// → running (boolean), window count (integer)
inline constexpr ScriptHandler<0> bridgeStatus{"bridgeStatus"};
/// → nothing that is used
inline constexpr ScriptHandler<0> systemEventsStatus{"systemEventsStatus"};
/// → a list of tab rows, never an empty one
inline constexpr ScriptHandler<0> listSessions{"listSessions"};
/// → a tab row: tty (text), window id, window index, tab index (integers), title (text), busy, selected
/// (booleans)
inline constexpr ScriptHandler<0> createWindow{"createWindow"};
/// command, tty (text), window id (integer), allow busy (boolean)
inline constexpr ScriptHandler<4> sendCommand{"sendCommand"};
/// key code, repeat count (integer; 0 brings the tab to the front), tty (text), window id (integer), allow
/// busy (boolean)
inline constexpr ScriptHandler<5> sendKey{"sendKey"};
/// source ("visible" or "history"), max characters (integer), tty (text), window id (integer)
/// → text, character count before cutting (integer)
inline constexpr ScriptHandler<4> readOutput{"readOutput"};
/// tty (text), window id (integer) → left, top, right, bottom (integers, screen points)
inline constexpr ScriptHandler<2> captureBounds{"captureBounds"};
/// tty (text), window id (integer)
inline constexpr ScriptHandler<2> focusSession{"focusSession"};
/// window id (integer)
inline constexpr ScriptHandler<1> closeWindow{"closeWindow"};
}  // namespace scriptHandler

}  // namespace velmora
