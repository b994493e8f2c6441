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

/// As tmux has made it already; here it goes into a format.
std::string plainName(std::string name) {
  for (char& c : name) {
    const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                       std::string_view("._+-").find(c) != std::string_view::npos;
    if (!plain) c = '?';
  }
  return name;
}

/// A format that is true while nobody has typed since the listing. Each session has the time of its last key,
/// in whole seconds; a window may be in several.
std::string isUntyped(const PaneRow& pane, const IdleGuard& idle) {
  const std::string typed = "#{S:#{?#{&&:#{==:#{window_id},@" + std::to_string(pane.window) +
                            "},#{>:#{session_activity}," + std::to_string(idle.lastActivity) + "}},1,}}";
  std::string untyped = "#{?" + typed + ",0,1}";
  if (!idle.cursorHolds) return untyped;
  return "#{&&:#{==:#{cursor_x}," + std::to_string(pane.cursorColumn) + "}," + untyped + "}";
}

/// `otherwise` is followed by what says why.
void addGuarded(std::vector<std::string>& arguments, const PaneRow& pane, const std::string& condition,
                const std::optional<IdleGuard>& idle, const std::string& then, const std::string& otherwise) {
  std::string all = condition;
  std::string reason(guardRefused);
  if (idle) {
    const std::string sameProgram =
        "#{==:#{" + std::string(plainProgramName) + "}," + plainName(pane.program) + "}";
    const std::string untyped = isUntyped(pane, *idle);
    all = "#{&&:" + condition + ",#{&&:" + sameProgram + "," + untyped + "}}";
    reason = "-t " + target(pane) + " '#{?" + condition + ",#{?" + sameProgram + "," +
             std::string(guardTyped) + "," + std::string(guardBusy) + "}," + std::string(guardRefused) + "}'";
  }
  arguments.insert(arguments.end(), {"if-shell", "-F", "-t", target(pane), all, then,
                                     otherwise + "display-message -p " + reason});
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
                     PasteForm form, const std::optional<IdleGuard>& idle) {
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
  otherwise += "delete-buffer -b " + returnBuffer + " ; ";
  addGuarded(command.arguments, pane, takesInput(pane), idle, then, otherwise);
  return command;
}

PaneCommand pressKey(const PaneRow& pane, TerminalKey key, std::int64_t repeatCount,
                     const std::string& bufferName, const std::optional<IdleGuard>& idle) {
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
  addGuarded(command.arguments, pane, condition, idle, then, drop + " ; ");
  return command;
}

PaneCommand typePlainly(const PaneRow& pane, std::string_view text, const std::string& bufferName,
                        const std::optional<IdleGuard>& idle) {
  const std::string tail = " -t " + target(pane);
  const std::string clean = pasteCleans(pane.version) ? " -S" : "";
  PaneCommand command{{"load-buffer", "-b", bufferName, "-", ";"}, std::string(text)};
  addGuarded(command.arguments, pane, takesInput(pane), idle,
             "copy-mode -q" + tail + " ; paste-buffer -d -r" + clean + " -b " + bufferName + tail,
             "delete-buffer -b " + bufferName + " ; ");
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

PaneCommand readCursorLine(const PaneRow& pane) {
  const std::string row = std::to_string(pane.cursorRow);
  return {{"display-message",
           "-p",
           "-t",
           target(pane),
           verdict(pane) + "\t#{cursor_x}\t#{cursor_y}\t#{history_size}\t#{pane_width}",
           ";",
           "capture-pane",
           "-p",
           "-J",
           "-S",
           "0",
           "-E",
           row,
           "-t",
           target(pane),
           ";",
           "capture-pane",
           "-p",
           "-N",
           "-S",
           row,
           "-E",
           row,
           "-t",
           target(pane)},
          {}};
}

PaneCommand readScreen(const PaneRow& pane) {
  return {{"display-message", "-p", "-t", target(pane),
           verdict(pane) + "\t#{pane_width}\t#{pane_height}\t#{cursor_x}\t#{cursor_y}\t#{cursor_flag}", ";",
           "capture-pane", "-e", "-N", "-p", "-t", target(pane)},
          {}};
}

PaneCommand readRows(const PaneRow& pane) {
  return {{"display-message", "-p", "-t", target(pane),
           verdict(pane) + "\t#{cursor_x}\t#{cursor_y}\t#{history_size}\t#{history_limit}", ";",
           "capture-pane", "-p", "-t", target(pane)},
          {}};
}

PaneCommand readSince(const PaneRow& pane, std::optional<std::int64_t> row) {
  return {{"display-message", "-p", "-t", target(pane), verdict(pane), ";", "capture-pane", "-p", "-J", "-S",
           row ? std::to_string(*row) : "-", "-t", target(pane)},
          {}};
}

PaneCommand readGrid(const PaneRow& pane, std::optional<std::int64_t> rowsAbove, bool coloured) {
  PaneCommand command{{"display-message", "-p", "-t", target(pane),
                       verdict(pane) + "\t#{history_size}\t#{pane_width}\t#{pane_height}\t#{history_limit}"},
                      {}};
  const std::string first = !rowsAbove ? "-" : *rowsAbove == 0 ? "0" : "-" + std::to_string(*rowsAbove);
  const auto add = [&](const std::vector<std::string>& how) {
    command.arguments.insert(command.arguments.end(), {";", "capture-pane", "-p", "-S", first});
    command.arguments.insert(command.arguments.end(), how.begin(), how.end());
    command.arguments.insert(command.arguments.end(), {"-t", target(pane)});
  };
  add({"-N"});
  add({"-J"});
  if (coloured) add({"-e", "-N"});
  return command;
}

}  // namespace velmora
