#include "TerminalAutomation/Tmux/PaneCommands.h"

#include <array>
#include <stdexcept>

namespace velmora {

namespace {

std::string target(const PaneRow& pane) { return "%" + std::to_string(pane.pane); }

/// A format that is true while the pane is the one that was listed: of the same server, in the same window,
/// on the same terminal, with the same program.
std::string isSamePane(const PaneRow& pane) {
  const auto is = [](const char* name, const std::string& value) {
    return std::string("#{==:#{") + name + "}," + value + "}";
  };
  std::string all = is("pid", std::to_string(pane.serverProcess));
  for (const std::string& condition :
       {is("start_time", std::to_string(pane.serverStart)),
        is("window_id", "@" + std::to_string(pane.window)), is("pane_tty", pane.tty),
        is("pane_pid", std::to_string(pane.process))}) {
    all = "#{&&:" + condition + "," + all + "}";
  }
  return all;
}

std::string takesInput(const PaneRow& pane) {
  return "#{?pane_dead,0,#{?pane_input_off,0," + isSamePane(pane) + "}}";
}

/// A format that prints whether the pane still is the one that was listed.
std::string verdict(const PaneRow& pane) {
  return "#{?" + isSamePane(pane) + "," + std::string(guardPassed) + "," + std::string(guardRefused) + "}";
}

void addGuarded(std::vector<std::string>& arguments, const PaneRow& pane, const std::string& condition,
                const std::string& then, const std::string& otherwise) {
  arguments.insert(arguments.end(), {"if-shell", "-F", "-t", target(pane), condition, then, otherwise});
}

/// What the key sends, and tmux's name for it. The bytes are those of tmux's own terminal.
struct KeyRow {
  TerminalKey key;
  const char* tmuxName;
  std::string_view bytes;
  std::string_view applicationBytes;  ///< In application cursor mode.
};

constexpr std::array<KeyRow, 13> keyRows{{
    {TerminalKey::upArrow, "Up", "\033[A", "\033OA"},
    {TerminalKey::downArrow, "Down", "\033[B", "\033OB"},
    {TerminalKey::leftArrow, "Left", "\033[D", "\033OD"},
    {TerminalKey::rightArrow, "Right", "\033[C", "\033OC"},
    {TerminalKey::return_, "Enter", "\r", "\r"},
    {TerminalKey::escape, "Escape", "\033", "\033"},
    {TerminalKey::tab, "Tab", "\t", "\t"},
    {TerminalKey::delete_, "BSpace", "\177", "\177"},
    {TerminalKey::forwardDelete, "DC", "\033[3~", "\033[3~"},
    {TerminalKey::home, "Home", "\033[1~", "\033[1~"},
    {TerminalKey::end, "End", "\033[4~", "\033[4~"},
    {TerminalKey::pageUp, "PPage", "\033[5~", "\033[5~"},
    {TerminalKey::pageDown, "NPage", "\033[6~", "\033[6~"},
}};

const KeyRow& rowOf(TerminalKey key) {
  for (const KeyRow& row : keyRows) {
    if (row.key == key) return row;
  }
  throw std::invalid_argument("not a key");
}

}  // namespace

PaneCommand typeText(const PaneRow& pane, std::string_view text, const std::string& bufferName,
                     PasteForm form) {
  // Return is pasted too: neither a copy mode nor synchronised panes can touch a paste.
  const std::string returnBuffer = bufferName + "r";
  // -r: line feeds stay as they are. -p: as one block when the program asks for that; a text that would end
  // the block early is typed plainly in any case.
  std::string flags = " -d -r";
  if (pasteCleans(pane.version)) flags += " -S";
  const bool asBlock = form == PasteForm::block && text.find("\033[201~") == std::string_view::npos;
  const std::string block = asBlock ? " -p" : "";
  const std::string tail = " -t " + target(pane);
  const std::string pasteReturn = "paste-buffer" + flags + " -b " + returnBuffer + tail;

  PaneCommand command;
  std::string then = "copy-mode -q" + tail + " ; ";
  std::string otherwise;
  if (text.empty()) {
    command = {{"load-buffer", "-b", returnBuffer, "-", ";"}, "\r"};
    then += pasteReturn;
  } else {
    command = {{"load-buffer", "-b", bufferName, "-", ";", "set-buffer", "-b", returnBuffer, "\r", ";"},
               std::string(text)};
    then += "paste-buffer" + flags + block + " -b " + bufferName + tail + " ; " + pasteReturn;
    otherwise = "delete-buffer -b " + bufferName + " ; ";
  }
  otherwise += "delete-buffer -b " + returnBuffer + " ; display-message -p " + std::string(guardRefused);
  addGuarded(command.arguments, pane, takesInput(pane), then, otherwise);
  return command;
}

PaneCommand pressKey(const PaneRow& pane, TerminalKey key, std::int64_t repeatCount,
                     const std::string& bufferName) {
  const KeyRow& row = rowOf(key);
  const std::string tail = " -t " + target(pane);
  const std::string drop = "delete-buffer -b " + bufferName;
  std::string then = "copy-mode -q" + tail + " ; ";
  std::string condition = takesInput(pane);
  PaneCommand command{{"load-buffer", "-b", bufferName, "-", ";"}, "x"};
  if (pane.synchronized) {
    // Keys would reach the window's other panes; pasted bytes do not.
    command.standardInput.clear();
    const std::string_view bytes = pane.applicationCursor ? row.applicationBytes : row.bytes;
    for (std::int64_t i = 0; i < repeatCount; ++i) command.standardInput += bytes;
    const bool cleans = pasteCleans(pane.version);
    then += std::string("paste-buffer -d -r") + (cleans ? " -S" : "") + " -b " + bufferName + tail;
  } else {
    then += drop + " ; send-keys -N " + std::to_string(repeatCount) + tail + " " + row.tmuxName;
    condition = "#{?pane_synchronized,0," + condition + "}";  // not if that was switched on meanwhile
  }
  addGuarded(command.arguments, pane, condition, then,
             drop + " ; display-message -p " + std::string(guardRefused));
  return command;
}

// Reading needs no guard that runs a command: it harms nobody to capture a pane that the answer then disowns,
// and tmux 3.3a keeps some memory of every if-shell.
PaneCommand readText(const PaneRow& pane, OutputSource source) {
  PaneCommand command{
      {"display-message", "-p", "-t", target(pane), verdict(pane), ";", "capture-pane", "-p", "-J"}, {}};
  if (source == OutputSource::history) command.arguments.insert(command.arguments.end(), {"-S", "-"});
  command.arguments.insert(command.arguments.end(), {"-t", target(pane)});
  return command;
}

PaneCommand readScreen(const PaneRow& pane) {
  return {{"display-message", "-p", "-t", target(pane),
           verdict(pane) + "\t#{pane_width}\t#{pane_height}\t#{cursor_x}\t#{cursor_y}\t#{cursor_flag}", ";",
           "capture-pane", "-e", "-N", "-p", "-t", target(pane)},
          {}};
}

}  // namespace velmora
