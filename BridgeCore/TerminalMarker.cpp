#include "BridgeCore/TerminalMarker.h"

#include <algorithm>
#include <utility>

#include "System/ThreadName.h"

namespace velmora {

namespace {

constexpr std::chrono::seconds patience{1};

}  // namespace

void TerminalMarker::use(bool on) {
  const MutexLock lock(mutex_);
  if (hasEnded_ || isOn_ == on) return;
  isOn_ = on;
  isNew_ = true;
  if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
  changed_.notify_all();
}

void TerminalMarker::look() {
  const MutexLock lock(mutex_);
  if (!isOn_) return;
  isNew_ = true;
  changed_.notify_all();
}

void TerminalMarker::agentTypes(const Uuid& session) {
  const MutexLock lock(mutex_);
  if (!isOn_) return;
  typedInto_ = session;
  typingEnds_ = std::chrono::steady_clock::now() + typingLasts;
  isNew_ = true;
  changed_.notify_all();
}

void TerminalMarker::end() noexcept {
  std::thread thread;
  {
    const MutexLock lock(mutex_);
    hasEnded_ = true;
    thread = std::move(thread_);
    changed_.notify_all();
  }
  if (thread.joinable()) thread.join();
}

TerminalMarks TerminalMarker::wanted(const std::optional<Uuid>& typedInto) {
  TerminalMarks marks;
  for (const auto& session : registry_.currentSessions()) {
    marks.tabs[session.tty] = {session.sessionId, session.permission};
    if (session.sessionId == typedInto)
      marks.state = "agent types in " + (session.targets.empty() ? session.tty : session.targets.front());
  }
  if (state_.current() == MCPState::paused) marks.state = "paused";
  return marks;
}

// A terminal that does not take it is asked again at the next change.
void TerminalMarker::run() {
  setThreadName("terminal-marks");
  std::optional<TerminalMarks> shown = TerminalMarks{};  // nothing when that is not known
  while (true) {
    bool isOver = false;
    bool isShown = false;
    std::optional<Uuid> typedInto;
    {
      MutexLock lock(mutex_);
      while (!isNew_ && !hasEnded_) {
        if (!typedInto_) {
          changed_.wait(lock);
        } else if (const auto end = typingEnds_;
                   changed_.wait_until(lock, end) == std::cv_status::timeout && typingEnds_ == end) {
          typedInto_.reset();
          isNew_ = true;
        }
      }
      isNew_ = false;
      isOver = hasEnded_;
      isShown = isOn_ && !hasEnded_;
      typedInto = typedInto_;
    }
    auto marks = isShown ? wanted(typedInto) : TerminalMarks{};
    if (marks != shown) {
      shown.reset();  // a mark that comes late, or fails half way, leaves either
      auto done = terminal_.mark(marks);
      if (done.wait_for(patience) == std::future_status::ready) {
        try {
          done.get();
          shown = std::move(marks);
        } catch (const std::exception&) {
        } catch (const StructuredError&) {
        }
      }
    }
    if (isOver) return;
  }
}

}  // namespace velmora
