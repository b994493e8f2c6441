// Threads, queues and deadlines for an adapter: the one TerminalAutomating over any TerminalOperations.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "System/Mutex.h"
#include "System/ThreadPool.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// How long each call may take, from its arrival to its end.
struct TerminalDeadlines {
  std::chrono::milliseconds operation{5'000};
  std::chrono::milliseconds history{30'000};  ///< Of reading a whole history.
  /// Longer than the five seconds after which the core answers a status call itself, so that a terminal that
  /// hangs is always reported in the same words.
  std::chrono::milliseconds status{6'000};
};

/// Thread-safe. What changes the terminal runs in the order of the calls, one at a time. Status and listings,
/// also in the order of the calls, up to four reads of text, and one picture at a time run beside it: a long
/// history or a huge screen holds nobody else up. (A serial adapter has one queue for everything.) Whole
/// listings that wait together are taken once for all. Behind a terminal that hangs, what waits fails when
/// its deadline has passed; there are never more than seven threads.
///
/// Destruction ends what is under way, as far as the adapter can, and fails what waits, some of it with
/// std::future_errc::broken_promise. The terminal's sessions outlive it.
class SerialTerminal : public TerminalAutomating {
 public:
  using TerminalAutomating::send;

  explicit SerialTerminal(std::unique_ptr<TerminalOperations> operations, TerminalDeadlines deadlines = {});
  ~SerialTerminal() override;

  std::string displayName() const override;
  std::future<TerminalRuntimeStatus> status() override;
  std::future<std::vector<TerminalTabSnapshot>> listSessions(Caller caller = {}) override;
  std::future<std::vector<TerminalTabSnapshot>> listTab(std::string tty, Caller caller = {}) override;
  std::future<TerminalTabSnapshot> createWindow(Caller caller = {}) override;
  std::future<void> send(std::string command, std::string tty, std::int64_t windowId, bool allowBusy,
                         Caller caller = {}) override;
  std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty, std::int64_t windowId,
                         bool allowBusy, Caller caller = {}) override;
  std::future<TerminalOutput> readOutput(OutputSource source, std::int64_t maxCharacters, std::string tty,
                                         std::int64_t windowId, Caller caller = {}) override;
  std::future<TerminalScreenCapture> captureScreen(std::string tty, std::int64_t windowId,
                                                   Caller caller = {}) override;
  std::future<void> focus(std::string tty, std::int64_t windowId, Caller caller = {}) override;
  void useSettings(const PrivacyRetentionSettings& settings) override;
  std::future<void> mark(const TerminalMarks& marks) override;
  void cancel() noexcept override;
  std::future<void> typeUnsubmitted(std::string text, std::string tty, std::int64_t windowId, bool allowBusy,
                                    Caller caller = {}) override;
  std::future<TerminalTabSnapshot> createWindowAs(WindowWish wish, Caller caller = {}) override;
  std::future<std::map<std::string, TabDetails>> tabDetails(Caller caller = {}) override;
  std::future<std::shared_ptr<TabWatch>> watch(std::string command, std::string tty, std::int64_t windowId,
                                               Caller caller = {}) override;
  std::future<TabWatch::View> look(std::shared_ptr<TabWatch> watch, std::int64_t maxCharacters,
                                   bool unfinished, Caller caller = {}) override;
  std::future<OutputFound> readAs(OutputWish wish, std::string tty, std::int64_t windowId,
                                  Caller caller = {}) override;

 protected:
  /// Queues what an adapter can do besides, among the calls that change the terminal. It has no deadline.
  template <class Work>
  auto change(Work work) {
    return changes_.submit(std::move(work));
  }

 private:
  template <class Work>
  static auto submit(ThreadPool& threads, std::chrono::milliseconds allowed, Caller caller, Work work) {
    return threads.submit([allowed, caller = std::move(caller), work = std::move(work)] {
      expectCaller(caller);
      return work(caller.since + allowed);
    });
  }
  static void expectCaller(const Caller& caller);

  /// A whole listing for everybody who asked before it was begun. Nothing when it failed, or is still to be
  /// taken; only the thread of `looks_` looks.
  using SharedListing = std::optional<std::vector<TerminalTabSnapshot>>;
  void stopJoining(const std::shared_ptr<SharedListing>& begun);

  const std::unique_ptr<TerminalOperations> operations_;
  const TerminalDeadlines deadlines_;
  Mutex queueing_;
  /// The last look that was queued, if it is a whole listing and not begun: who asks for one now joins it.
  std::shared_ptr<SharedListing> next_ VELMORA_GUARDED_BY(queueing_);
  // These go first: their threads use what stands above.
  ThreadPool changes_;
  ThreadPool ownLooks_;
  ThreadPool ownReads_;
  ThreadPool ownPictures_;
  // Those of a serial adapter are `changes_`.
  ThreadPool& looks_;
  ThreadPool& reads_;
  ThreadPool& pictures_;
};

}  // namespace velmora
