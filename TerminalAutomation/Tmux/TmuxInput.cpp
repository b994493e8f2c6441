// TmuxOperations: what types into a pane, and what must hold before it does.
#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <utility>

#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t cursorLineLimit = std::size_t{16} << 20;
// A shell that draws its prompt moves the cursor, too, for milliseconds.
constexpr int looksAtMovingCursor = 5;
constexpr auto movingPause = 20ms;

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

std::optional<TmuxOperations::InputPane> TmuxOperations::paneForInput(const TabAddress& tab, bool allowBusy,
                                                                      Deadline deadline) {
  PaneRow pane = paneAt(tab);
  if (pane.dead) throw tmuxError::dead();
  if (pane.inputOff) throw tmuxError::inputOff();
  const bool busy = isBusy(pane);
  if (busy && !allowBusy) throw tmuxError::busy();
  // Whatever the user allows: an agent's words are no password, and its command must not become one.
  const auto mode = parts_.processes->terminalMode(pane.tty);
  if (mode && mode->hidesLine) throw tmuxError::asksForSecret();
  if (allowBusy) return InputPane{std::move(pane), busy, mode, std::nullopt};
  if (!refuseTypedLine(pane, deadline)) return std::nullopt;
  const IdleGuard idle = prompts_.guard(pane);
  return InputPane{std::move(pane), busy, mode, idle};
}

bool TmuxOperations::refuseTypedLine(const PaneRow& pane, Deadline deadline) {
  auto line = prompts_.line(pane);
  if (line == PromptWatch::Line::doubtful) {
    const auto looked = parseCursorLine(read(deadline, readCursorLine(pane), cursorLineLimit), pane);
    if (!looked) return false;
    line = prompts_.settle(pane, *looked);
  }
  if (line == PromptWatch::Line::typedIn) throw tmuxError::someoneTypes();
  return true;
}

bool TmuxOperations::type(Deadline deadline, const PaneRow& pane, PaneCommand command) {
  const TmuxAnswer answer = invoke(deadline, std::move(command.arguments), std::move(command.standardInput));
  if (answer.output.starts_with(guardRefused)) throw tmuxError::stale();
  if (answer.output.starts_with(guardBusy)) throw tmuxError::busy();
  if (answer.output.starts_with(guardTyped)) return false;
  prompts_.touch(pane);
  if (auto failure = tmuxFailure(answer, TmuxEffect::typed)) throw std::move(*failure);
  return true;
}

void TmuxOperations::deliver(const TabAddress& tab, bool allowBusy, Deadline deadline,
                             const std::function<PaneCommand(const InputPane&)>& compose) {
  for (int look = 1; look <= looksAtMovingCursor; ++look) {
    // A key that the user pressed meanwhile is in the new listing, and refuses at once.
    if (look > 1) {
      options_.sleep(movingPause);
      listTab(tab.tty, deadline);
    }
    const auto pane = paneForInput(tab, allowBusy, deadline);
    if (pane && type(deadline, pane->row, compose(*pane))) return;
  }
  throw tmuxError::someoneTypes();
}

void TmuxOperations::sendCommand(const std::string& command, const TabAddress& tab, bool allowBusy,
                                 Deadline deadline) {
  if (command.find('\0') != std::string::npos) throw tmuxError::textHasNul();
  deliver(tab, allowBusy, deadline, [&](const InputPane& pane) {
    if (pane.mode && pane.mode->collectsLines) {
      const std::size_t limit = parts_.processes->longestCollectedLine();
      if (longestLine(command) > limit) throw tmuxError::lineTooLong(limit);
    }
    // An editor would put a block into its text, where a line is meant as its command.
    const bool oneLine = command.find_first_of("\r\n") == std::string::npos;
    const PasteForm form = pane.busy && oneLine ? PasteForm::keys : PasteForm::block;
    return typeText(pane.row, command, newBufferName(), form, pane.idle);
  });
}

void TmuxOperations::sendKey(TerminalKey key, std::int64_t repeatCount, const TabAddress& tab, bool allowBusy,
                             Deadline deadline) {
  if (repeatCount < 1 || repeatCount > 50) throw tmuxError::badRepeatCount();
  deliver(tab, allowBusy, deadline, [&](const InputPane& pane) {
    return pressKey(pane.row, key, repeatCount, newBufferName(), pane.idle);
  });
}

void TmuxOperations::typeUnsubmitted(const std::string& text, const TabAddress& tab, bool allowBusy,
                                     Deadline deadline) {
  if (text.find('\0') != std::string::npos) throw tmuxError::textHasNul();
  deliver(tab, allowBusy, deadline,
          [&](const InputPane& pane) { return typePlainly(pane.row, text, newBufferName(), pane.idle); });
}

}  // namespace velmora
