#include "TerminalAutomation/Tmux/PaneLooks.h"

#include <utility>

namespace velmora {

PaneLooks::PaneLooks(const ProcessTable& processes, std::function<void(std::chrono::milliseconds)> sleep)
    : processes_(processes), sleep_(std::move(sleep)) {}

void PaneLooks::expect(const std::vector<const PaneRow*>& panes) {
  std::vector<Shell> expected;
  expected.reserve(panes.size());
  for (const PaneRow* const pane : panes) {
    if (!pane->dead) expected.push_back({pane->process, pane->tty});
  }
  const MutexLock lock(mutex_);
  expected_ = std::move(expected);
}

PaneLooks::Ahead PaneLooks::lookAhead() const {
  std::vector<Shell> expected;
  {
    const MutexLock lock(mutex_);
    expected = expected_;
  }
  Ahead ahead;
  ahead.reserve(expected.size());
  for (Shell& shell : expected) {
    const PaneLook look = lookAtPane(processes_, shell.process, shell.tty);
    ahead.insert_or_assign(shell.process, Look{std::move(shell.tty), look});
  }
  return ahead;
}

std::vector<bool> PaneLooks::areBusy(const std::vector<const PaneRow*>& panes, const Ahead& ahead) const {
  constexpr std::chrono::milliseconds pause{20};
  const auto lookAt = [this](const PaneRow& pane) {
    return pane.dead ? PaneLook::idle : lookAtPane(processes_, pane.process, pane.tty);
  };
  std::vector<bool> busy;
  busy.reserve(panes.size());
  std::vector<std::size_t> doubtful;
  for (const PaneRow* const pane : panes) {
    const auto seen = ahead.find(pane->process);
    const bool known = !pane->dead && seen != ahead.end() && seen->second.tty == pane->tty;
    const PaneLook look = known ? seen->second.look : lookAt(*pane);
    if (look == PaneLook::running) doubtful.push_back(busy.size());
    busy.push_back(look == PaneLook::busy);
  }
  if (!doubtful.empty()) sleep_(pause);
  for (const std::size_t place : doubtful) busy[place] = lookAt(*panes[place]) != PaneLook::idle;
  return busy;
}

}  // namespace velmora
