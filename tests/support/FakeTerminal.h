// A terminal made of a list of tabs. It answers at once, remembers what it was asked, and fails or hangs on
// demand.
#pragma once

#include <algorithm>
#include <atomic>
#include <future>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "System/Mutex.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora::testing {

inline TerminalTabSnapshot tab(const std::string& tty, std::int64_t windowId = 1,
                               std::int64_t windowIndex = 1, std::int64_t tabIndex = 1) {
  return {.tty = tty,
          .windowId = windowId,
          .windowIndex = windowIndex,
          .tabIndex = tabIndex,
          .title = "title of " + tty,
          .busy = false,
          .selected = tabIndex == 1};
}

/// Thread-safe, once set up. `failures` maps an operation's name to what it throws; once the terminal is
/// shared, only `failWith` changes it.
class FakeTerminal final : public TerminalAutomating {
 public:
  using TerminalAutomating::send;

  std::string name = "Fake";
  std::vector<TerminalTabSnapshot> tabs;
  TerminalTabSnapshot created = tab("/dev/ttys900", 900);
  TerminalRuntimeStatus runtimeStatus{
      .running = true, .windowCount = 1, .permission = AutomationPermission::granted};
  TerminalOutput output{.text = "output", .source = OutputSource::visible, .originalCharacterCount = 6};
  OutputFound found;  ///< What the extended form has of `output`: no cursor, unless set.
  std::map<std::string, std::exception_ptr> failures;
  std::map<std::string, TabDetails> details;
  std::shared_ptr<TabWatch> tabWatch;
  bool statusHangs = false;
  std::atomic<bool> listingsHang = false;
  std::optional<PrivacyRetentionSettings> settings;  ///< The last that it was given.
  bool listsTabsAlone = false;                       ///< Else a call about one tab gets the whole listing.

  ~FakeTerminal() override { release(); }

  template <class Error>
  void failWith(const std::string& operation, Error error) {
    const MutexLock lock(mutex_);
    failures[operation] = std::make_exception_ptr(std::move(error));
  }

  std::vector<std::string> calls() const {
    const MutexLock lock(mutex_);
    return calls_;
  }
  /// On whose behalf each call but status was made.
  std::vector<Caller> callers() const {
    const MutexLock lock(mutex_);
    return callers_;
  }
  std::size_t callCount(const std::string& operation) const {
    const auto all = calls();
    return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), [&](const auto& call) {
      return call == operation || call.starts_with(operation + "(");
    }));
  }

  /// Lets hanging status queries answer.
  void release() {
    for (auto& promise : taken(hanging_)) promise.set_value(runtimeStatus);
  }

  /// Lets the hanging listings answer with `listed`, in order.
  void releaseListings(const std::vector<TerminalTabSnapshot>& listed) {
    for (auto& promise : taken(hangingListings_)) promise.set_value(listed);
  }
  void failListings(const std::exception_ptr& error) {
    for (auto& promise : taken(hangingListings_)) promise.set_exception(error);
  }

  std::string displayName() const override { return name; }
  void cancel() noexcept override { release(); }
  std::future<void> mark(const TerminalMarks& marks) override {
    auto future = done("mark", "mark");
    const MutexLock lock(mutex_);
    if (!failures.contains("mark")) marked_.push_back(marks);
    return future;
  }
  std::vector<TerminalMarks> marked() const {
    const MutexLock lock(mutex_);
    return marked_;
  }
  void useSettings(const PrivacyRetentionSettings& given) override { settings = given; }

  std::future<TerminalRuntimeStatus> status() override {
    if (statusHangs) {
      const MutexLock lock(mutex_);
      calls_.push_back("status");
      return hanging_.emplace_back().get_future();
    }
    return answer("status", "status", runtimeStatus);
  }
  std::future<std::vector<TerminalTabSnapshot>> listSessions(Caller caller = {}) override {
    note(caller);
    if (listingsHang) {
      const MutexLock lock(mutex_);
      calls_.push_back("listSessions");
      return hangingListings_.emplace_back().get_future();
    }
    return answer("listSessions", "listSessions", tabs);
  }
  std::future<std::vector<TerminalTabSnapshot>> listTab(std::string tty, Caller caller = {}) override {
    if (!listsTabsAlone) return listSessions(std::move(caller));
    note(caller);
    std::vector<TerminalTabSnapshot> alone = tabs;
    std::erase_if(alone, [&](const auto& each) { return each.tty != tty; });
    return answer("listTab", "listTab(" + tty + ")", std::move(alone));
  }
  std::future<TerminalTabSnapshot> createWindow(Caller caller = {}) override {
    note(caller);
    return answer("createWindow", "createWindow", created);
  }
  std::future<void> send(std::string command, std::string tty, std::int64_t windowId, bool allowBusy,
                         Caller caller = {}) override {
    note(caller);
    return done("send",
                "send(" + command + ", " + tty + ", " + std::to_string(windowId) + busyText(allowBusy));
  }
  std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty, std::int64_t windowId,
                         bool allowBusy, Caller caller = {}) override {
    note(caller);
    return done("sendKey", "sendKey(" + std::string(wireName(key)) + " x" + std::to_string(repeatCount) +
                               ", " + tty + ", " + std::to_string(windowId) + busyText(allowBusy));
  }
  std::future<TerminalOutput> readOutput(OutputSource source, std::int64_t maxCharacters, std::string tty,
                                         std::int64_t windowId, Caller caller = {}) override {
    note(caller);
    auto result = output;
    result.source = source;
    return answer("readOutput",
                  "readOutput(" + std::string(wireName(source)) + ", " + std::to_string(maxCharacters) +
                      ", " + tty + ", " + std::to_string(windowId) + ")",
                  result);
  }
  std::future<TerminalScreenCapture> captureScreen(std::string tty, std::int64_t windowId,
                                                   Caller caller = {}) override {
    note(caller);
    return answer("captureScreen", "captureScreen(" + tty + ", " + std::to_string(windowId) + ")",
                  TerminalScreenCapture{"/tmp/picture.png"});
  }
  std::future<void> focus(std::string tty, std::int64_t windowId, Caller caller = {}) override {
    note(caller);
    return done("focus", "focus(" + tty + ", " + std::to_string(windowId) + ")");
  }
  std::future<void> typeUnsubmitted(std::string text, std::string tty, std::int64_t windowId, bool allowBusy,
                                    Caller caller = {}) override {
    note(caller);
    return done("typeUnsubmitted", "typeUnsubmitted(" + text + ", " + tty + ", " + std::to_string(windowId) +
                                       busyText(allowBusy));
  }
  std::future<TerminalTabSnapshot> createWindowAs(WindowWish wish, Caller caller = {}) override {
    note(caller);
    return answer("createWindow", "createWindowAs(" + wish.name.value_or("") + ")", created);
  }
  std::future<std::map<std::string, TabDetails>> tabDetails(Caller caller = {}) override {
    note(caller);
    return answer("tabDetails", "tabDetails", details);
  }
  std::future<std::shared_ptr<TabWatch>> watch(std::string command, std::string, std::int64_t,
                                               Caller caller = {}) override {
    note(caller);
    return answer("watch", "watch(" + command + ")", tabWatch);
  }
  std::future<TabWatch::View> look(std::shared_ptr<TabWatch> watched, std::int64_t maxCharacters,
                                   bool unfinished, Caller caller = {}) override {
    note(caller);
    return answer("look", "look", watched->look(maxCharacters, unfinished, {}));
  }
  std::future<OutputFound> readAs(OutputWish wish, std::string tty, std::int64_t windowId,
                                  Caller caller = {}) override {
    note(caller);
    auto result = found;
    result.output = output;
    result.output.source = wish.source;
    result.cursorLost = wish.after && !found.cursor;
    return answer("readOutput",
                  "readOutput(" + std::string(wireName(wish.source)) + ", " +
                      std::to_string(wish.maxCharacters) + ", " + tty + ", " + std::to_string(windowId) +
                      (wish.after ? ", after " + *wish.after : "") +
                      (wish.format == OutputFormat::ansi ? ", ansi)" : ")"),
                  result);
  }

 private:
  template <class Promise>
  std::vector<Promise> taken(std::vector<Promise>& hanging) {
    const MutexLock lock(mutex_);
    return std::exchange(hanging, {});
  }

  static std::string busyText(bool allowBusy) { return allowBusy ? ", allowBusy)" : ")"; }

  void note(const Caller& caller) {
    const MutexLock lock(mutex_);
    callers_.push_back(caller);
  }

  std::exception_ptr note(const std::string& operation, const std::string& call) {
    const MutexLock lock(mutex_);
    calls_.push_back(call);
    const auto failure = failures.find(operation);
    return failure == failures.end() ? nullptr : failure->second;
  }

  template <class Result>
  static std::future<Result> failed(std::exception_ptr error) {
    std::promise<Result> promise;
    promise.set_exception(std::move(error));
    return promise.get_future();
  }

  template <class Result>
  std::future<Result> answer(const std::string& operation, const std::string& call, Result result) {
    if (const auto failure = note(operation, call)) return failed<Result>(failure);
    std::promise<Result> promise;
    promise.set_value(std::move(result));
    return promise.get_future();
  }

  std::future<void> done(const std::string& operation, const std::string& call) {
    if (const auto failure = note(operation, call)) return failed<void>(failure);
    std::promise<void> promise;
    promise.set_value();
    return promise.get_future();
  }

  mutable Mutex mutex_;
  std::vector<TerminalMarks> marked_ VELMORA_GUARDED_BY(mutex_);
  std::vector<std::string> calls_ VELMORA_GUARDED_BY(mutex_);
  std::vector<Caller> callers_ VELMORA_GUARDED_BY(mutex_);
  std::vector<std::promise<TerminalRuntimeStatus>> hanging_;
  std::vector<std::promise<std::vector<TerminalTabSnapshot>>> hangingListings_;
};

}  // namespace velmora::testing
