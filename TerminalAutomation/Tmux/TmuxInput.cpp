// TmuxOperations: what types into a pane, and what must hold before it does.
#include <algorithm>
#include <utility>

#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

namespace {

constexpr std::size_t cursorLineLimit = std::size_t{16} << 20;

std::size_t longestLine(std::string_view text) {
  std::size_t longest = 0;
  while (true) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    longest = std::max(longest, end);
    if (end == text.size()) return longest;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

TmuxOperations::InputPane TmuxOperations::paneForInput(const TabAddress& tab, bool allowBusy,
                                                       Deadline deadline) {
  PaneRow pane = paneAt(tab);
  if (pane.dead) throw tmuxError::dead();
  if (pane.inputOff) throw tmuxError::inputOff();
  const bool busy = isBusy(pane);
  if (busy && !allowBusy) throw tmuxError::busy();
  // Whatever the user allows: an agent's words are no password, and its command must not become one.
  const auto mode = parts_.processes->terminalMode(pane.tty);
  if (mode && mode->hidesLine) throw tmuxError::asksForSecret();
  if (allowBusy) return {std::move(pane), busy, mode, std::nullopt};
  refuseTypedLine(pane, deadline);
  const IdleGuard idle = prompts_.guard(pane);
  return {std::move(pane), busy, mode, idle};
}

void TmuxOperations::refuseTypedLine(const PaneRow& pane, Deadline deadline) {
  auto line = prompts_.line(pane);
  if (line == PromptWatch::Line::doubtful) {
    const auto looked = parseCursorLine(read(deadline, readCursorLine(pane), cursorLineLimit), pane);
    line = looked ? prompts_.settle(pane, *looked) : PromptWatch::Line::typedIn;
  }
  if (line == PromptWatch::Line::typedIn) throw tmuxError::someoneTypes();
}

void TmuxOperations::type(Deadline deadline, const PaneRow& pane, PaneCommand command) {
  const TmuxAnswer answer = invoke(deadline, std::move(command.arguments), std::move(command.standardInput));
  if (answer.output.starts_with(guardRefused)) throw tmuxError::stale();
  if (answer.output.starts_with(guardBusy)) throw tmuxError::busy();
  if (answer.output.starts_with(guardTyped)) throw tmuxError::someoneTypes();
  prompts_.touch(pane);
  if (auto failure = tmuxFailure(answer, TmuxEffect::typed)) throw std::move(*failure);
}

void TmuxOperations::sendCommand(const std::string& command, const TabAddress& tab, bool allowBusy,
                                 Deadline deadline) {
  if (command.find('\0') != std::string::npos) throw tmuxError::textHasNul();
  const InputPane pane = paneForInput(tab, allowBusy, deadline);
  if (pane.mode && pane.mode->collectsLines) {
    const std::size_t limit = parts_.processes->longestCollectedLine();
    if (longestLine(command) > limit) throw tmuxError::lineTooLong(limit);
  }
  // An editor would put a block into its text, where a line is meant as its command.
  const bool oneLine = command.find_first_of("\r\n") == std::string::npos;
  const PasteForm form = pane.busy && oneLine ? PasteForm::keys : PasteForm::block;
  type(deadline, pane.row, typeText(pane.row, command, newBufferName(), form, pane.idle));
}

void TmuxOperations::sendKey(TerminalKey key, std::int64_t repeatCount, const TabAddress& tab, bool allowBusy,
                             Deadline deadline) {
  if (repeatCount < 1 || repeatCount > 50) throw tmuxError::badRepeatCount();
  const InputPane pane = paneForInput(tab, allowBusy, deadline);
  type(deadline, pane.row, pressKey(pane.row, key, repeatCount, newBufferName(), pane.idle));
}

}  // namespace velmora
