// The eight operations as the bridge core calls them: each starts at once and hands back a future.
#pragma once

#include <future>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BridgeModels/Caller.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "TerminalAutomation/TerminalOperations.h"

namespace velmora {

/// Thread-safe. Failures arrive through the future. Each call is over soon after its deadline, which counts
/// from `caller.since`; nothing is begun for a caller who has left. What the operations do stands at
/// TerminalOperations.
class TerminalAutomating {
 public:
  virtual ~TerminalAutomating() = default;

  virtual std::string displayName() const = 0;

  virtual std::future<TerminalRuntimeStatus> status() = 0;

  /// Listings are taken in the order in which they are asked for, those of one tab among them.
  virtual std::future<std::vector<TerminalTabSnapshot>> listSessions(Caller caller = {}) = 0;
  virtual std::future<std::vector<TerminalTabSnapshot>> listTab(std::string tty, Caller caller = {}) = 0;

  virtual std::future<TerminalTabSnapshot> createWindow(Caller caller = {}) = 0;
  virtual std::future<void> send(std::string command, std::string tty, std::int64_t windowId, bool allowBusy,
                                 Caller caller = {}) = 0;
  virtual std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty,
                                 std::int64_t windowId, bool allowBusy, Caller caller = {}) = 0;
  virtual std::future<TerminalOutput> readOutput(OutputSource source, std::int64_t maxCharacters,
                                                 std::string tty, std::int64_t windowId,
                                                 Caller caller = {}) = 0;
  virtual std::future<TerminalScreenCapture> captureScreen(std::string tty, std::int64_t windowId,
                                                           Caller caller = {}) = 0;
  virtual std::future<void> focus(std::string tty, std::int64_t windowId, Caller caller = {}) = 0;

  /// The user's settings, when they were loaded and whenever they change: what they say of the terminal holds
  /// for every later call.
  virtual void useSettings(const PrivacyRetentionSettings& /*settings*/) {}

  /// Has the terminal itself show this, in place of what it showed before; nothing where it cannot.
  virtual std::future<void> mark(const TerminalMarks& /*marks*/) {
    std::promise<void> done;
    done.set_value();
    return done.get_future();
  }

  /// For shutdown: ends what is under way early, and fails it and all later calls.
  virtual void cancel() noexcept {}

  // What only the extended form of the tools asks for.
  virtual std::future<void> typeUnsubmitted(std::string text, std::string tty, std::int64_t windowId,
                                            bool allowBusy, Caller caller = {}) = 0;
  virtual std::future<TerminalTabSnapshot> createWindowAs(WindowWish wish, Caller caller = {}) = 0;
  virtual std::future<std::map<std::string, TabDetails>> tabDetails(Caller caller = {}) = 0;
  virtual std::future<std::shared_ptr<TabWatch>> watch(std::string command, std::string tty,
                                                       std::int64_t windowId, Caller caller = {}) = 0;
  /// A look through `watch`, which must not be used meanwhile.
  virtual std::future<TabWatch::View> look(std::shared_ptr<TabWatch> watch, std::int64_t maxCharacters,
                                           bool unfinished, Caller caller = {}) = 0;

  virtual std::future<OutputFound> readAs(OutputWish wish, std::string tty, std::int64_t windowId,
                                          Caller caller = {}) = 0;

  // The same two operations for tabs that must not be busy.
  std::future<void> send(std::string command, std::string tty, std::int64_t windowId) {
    return send(std::move(command), std::move(tty), windowId, /*allowBusy=*/false);
  }
  std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty, std::int64_t windowId) {
    return send(key, repeatCount, std::move(tty), windowId, /*allowBusy=*/false);
  }
};

}  // namespace velmora
