// The bridge core over the tmux adapter and a real server: what one tool call costs, and what it costs when
// the server hangs.
#include <atomic>
#include <thread>

#include "BridgeCore/BridgeCoordinator.h"
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"
#include "tests/support/FakeTime.h"

namespace velmora {
namespace {

using testing::eventually;
using testing::numberedUuid;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// Runs the tmux program and counts how often. What types can be made to break off.
class CountingTransport final : public TmuxTransport {
 public:
  CountingTransport(std::unique_ptr<TmuxTransport> inner, std::atomic<int>& programs,
                    const std::atomic<bool>& breaksOff)
      : inner_(std::move(inner)), programs_(programs), breaksOff_(breaksOff) {}

  TmuxAnswer run(const TmuxInvocation& invocation) override {
    ++programs_;
    if (breaksOff_ && invocation.arguments.front() == "load-buffer")
      return {.end = TmuxAnswer::End::timedOut};
    return inner_->run(invocation);
  }
  std::string socketPath() const override { return inner_->socketPath(); }
  void cancel() noexcept override { inner_->cancel(); }

 private:
  const std::unique_ptr<TmuxTransport> inner_;
  std::atomic<int>& programs_;
  const std::atomic<bool>& breaksOff_;
};

class TmuxCoordinator : public testing::PrivateTmux {
 protected:
  BridgeCoordinator& coordinator() {
    if (!coordinator_) {
      TmuxParts parts = TmuxParts::ofSystem(options());
      parts.transport =
          std::make_unique<CountingTransport>(std::move(parts.transport), programs_, breaksOff_);
      executor_ = makeTmuxTerminal(options(), std::move(parts));
      coordinator_ = std::make_unique<BridgeCoordinator>(*executor_, registry_, state_, recorder_, settings_,
                                                         history_, time_.clock());
    }
    return *coordinator_;
  }

  Uuid onlySession() {
    auto& core = coordinator();
    Uuid id;
    EXPECT_TRUE(eventually([&] {
      const auto listed = core.listSessions(Uuid::random(), client_, {.includeBusy = false});
      if (!listed.ok || listed.data->sessions.size() != 1) return false;
      id = listed.data->sessions[0].sessionId;
      return true;
    })) << "no shell at its prompt";
    return id;
  }

  /// Waits until the shell has drawn a prompt on the screen's line `line`, from 0. A line that was seen
  /// before it was drawn is looked at again, which costs a program.
  void waitForPrompt(int line) {
    EXPECT_TRUE(eventually([&] {
      const auto cursor = tmux({"display-message", "-p", "#{cursor_x} #{cursor_y}"});
      return !cursor.starts_with("0 ") && cursor.ends_with(" " + std::to_string(line));
    })) << "no prompt on line "
        << line;
  }

  /// How many tmux programs `call` starts; it must succeed.
  template <class Call>
  int programsOf(Call call) {
    programs_ = 0;
    const auto result = call();
    EXPECT_TRUE(result.ok) << result.error->message;
    return programs_;
  }

  const ClientIdentitySummary client_{"test", std::nullopt};
  std::atomic<int> programs_ = 0;
  std::atomic<bool> breaksOff_ = false;
  PosixFileSystem files_;
  testing::FakeTime time_;
  BridgeOperationState state_{MCPState::active};
  SessionRegistry registry_{Uuid::random(), Uuid::random};
  RequestRecorder recorder_{time_.clock()};
  PrivacySettingsStore settings_{files_, directory_ / "settings.json", {}};
  HistoryStore history_{files_, directory_ / "history.json"};
  std::unique_ptr<BridgeCoordinator> coordinator_;
};

TEST_F(TmuxCoordinator, ACallStartsNoMoreTmuxProgramsThanItNeeds) {
  startServer();
  waitForPrompt(0);
  const auto id = onlySession();
  auto& core = coordinator();
  const auto request = Uuid::random;
  EXPECT_EQ(programsOf([&] { return core.status(request(), client_); }), 1);
  EXPECT_EQ(programsOf([&] { return core.listSessions(request(), client_, {}); }), 1);
  EXPECT_EQ(programsOf([&] { return core.sendCommand(request(), client_, {id, ":"}); }), 2);
  waitForPrompt(1);
  ASSERT_EQ(onlySession(), id);
  EXPECT_EQ(programsOf([&] { return core.sendKey(request(), client_, {id, TerminalKey::upArrow, 1}); }), 2);
  EXPECT_EQ(programsOf([&] {
              return core.readOutput(request(), client_, {id, OutputSource::visible, 100});
            }),
            2);
  EXPECT_EQ(programsOf([&] {
              return core.readOutput(request(), client_, {id, OutputSource::history, 100});
            }),
            2);
  EXPECT_EQ(programsOf([&] { return core.captureScreen(request(), client_, {id}); }), 2);
  EXPECT_EQ(programsOf([&] { return core.focusSession(request(), client_, {id}); }), 3);
}

TEST_F(TmuxCoordinator, ADeliveryThatBrokeOffIsRecordedAsFailed) {
  startServer();
  const auto id = onlySession();
  breaksOff_ = true;
  const auto result = coordinator_->sendCommand(Uuid::random(), client_, {id, ":"});
  ASSERT_FALSE(result.ok);
  EXPECT_FALSE(result.error->retryable);
  EXPECT_NE(result.error->message.find("may have been typed"), std::string::npos) << result.error->message;
  EXPECT_EQ(recorder_.snapshot().back().status, RequestStatus::failed) << "it was not rejected";
}

TEST_F(TmuxCoordinator, AServerThatHangsCostsEachOfManyCallersTheSameFewSeconds) {
  startServer();
  onlySession();
  const pid_t server = serverProcess().value();
  ::kill(server, SIGSTOP);
  constexpr std::size_t callers = 8;
  std::vector<ToolResult<SessionsPayload>> listed(callers);
  std::vector<ToolResult<StatusPayload>> asked(callers);
  std::vector<std::thread> threads;
  const auto start = steady_clock::now();
  for (std::size_t i = 0; i < callers; ++i) {
    threads.emplace_back([&, i] { listed[i] = coordinator_->listSessions(Uuid::random(), client_, {}); });
    threads.emplace_back([&, i] { asked[i] = coordinator_->status(Uuid::random(), client_); });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_LT(steady_clock::now() - start, 6500ms) << "one after another the listings would take forty";
  ::kill(server, SIGCONT);
  for (const auto& result : listed) {
    ASSERT_FALSE(result.ok);
    EXPECT_EQ(result.error->message, "tmux did not answer in time.");
    EXPECT_TRUE(result.error->retryable);
  }
  for (const auto& result : asked) {
    EXPECT_EQ(result.data->status.lastError->message, "Terminal.app did not respond within five seconds.");
  }
}

/// One run of the bridge over the private server; the next one has new ids and the same file.
struct BridgeRun {
  BridgeRun(TmuxOptions options, FileSystem& files, const std::filesystem::path& folder)
      : store(files, folder / "permissions.json"),
        settings(files, folder / "settings.json", {}),
        history(files, folder / "history.json"),
        terminal(makeTmuxTerminal(std::move(options))),
        core(*terminal, registry, state, recorder, settings, history, Date::now, {}, &store) {
    core.loadLocalState();
  }

  std::vector<TerminalSession> list() {
    const auto listed = core.listSessions(Uuid::random(), {"test", std::nullopt}, {});
    if (!listed.ok) throw std::runtime_error(listed.error->message);
    return listed.data->sessions;
  }
  /// The session of a pane, once it has the id that it keeps.
  TerminalSession of(const std::string& tty) {
    std::optional<TerminalSession> found;
    eventually([&] {
      for (auto& session : list()) {
        if (session.tty == tty) found = std::move(session);
      }
      return found.has_value();
    });
    return found.value();
  }
  std::optional<ErrorCode> read(const TerminalSession& session) {
    const auto answer = core.readOutput(Uuid::random(), {"test", std::nullopt},
                                        {session.sessionId, OutputSource::visible, 100});
    return answer.ok ? std::nullopt : std::optional(answer.error->code);
  }

  BridgeOperationState state{MCPState::active};
  SessionRegistry registry{Uuid::random(), Uuid::random};
  RequestRecorder recorder{Date::now};
  PermissionStore store;
  PrivacySettingsStore settings;
  HistoryStore history;
  std::unique_ptr<SerialTerminal> terminal;
  BridgeCoordinator core;
};

TEST_F(TmuxCoordinator, ABlockedPaneStaysBlockedWhereverItGoesAndWhoeverStartsTheBridgeAgain) {
  startServer();
  tmux({"split-window", "-t", "main"});
  tmux({"new-session", "-d", "-s", "other"});
  const auto pane = tmux({"display-message", "-p", "-t", "main:0.0", "#{pane_id}"});
  const auto tty = tmux({"display-message", "-p", "-t", pane, "#{pane_tty}"});
  const auto guarded = tmux({"display-message", "-p", "-t", "main:0.1", "#{pane_tty}"});
  auto run = std::make_unique<BridgeRun>(options(), files_, directory_.path());
  const auto blocked = run->of(tty);
  run->core.setPermission(SessionPermission::blocked, blocked.sessionId);
  run->core.setPermission(SessionPermission::readOnly, run->of(guarded).sessionId);
  ASSERT_EQ(run->read(blocked), ErrorCode::sessionNotAllowed);

  tmux({"break-pane", "-d", "-s", pane});
  const auto broken = run->of(tty);
  EXPECT_NE(broken.sessionId, blocked.sessionId);
  EXPECT_EQ(broken.permission, SessionPermission::blocked);
  EXPECT_EQ(run->read(broken), ErrorCode::sessionNotAllowed);

  tmux({"join-pane", "-d", "-s", pane, "-t", "other:0.0"});
  const auto joined = run->of(tty);
  EXPECT_NE(joined.sessionId, broken.sessionId);
  EXPECT_EQ(run->read(joined), ErrorCode::sessionNotAllowed);

  tmux({"respawn-pane", "-k", "-t", pane});
  const auto terminalNow = tmux({"display-message", "-p", "-t", pane, "#{pane_tty}"});
  EXPECT_EQ(run->read(run->of(terminalNow)), ErrorCode::sessionNotAllowed);

  run.reset();
  run = std::make_unique<BridgeRun>(options(), files_, directory_.path());
  EXPECT_EQ(run->read(run->of(terminalNow)), ErrorCode::sessionNotAllowed);
  EXPECT_EQ(run->of(guarded).permission, SessionPermission::readOnly);
  for (const auto& session : run->list()) {
    if (session.tty == terminalNow || session.tty == guarded) continue;
    EXPECT_EQ(session.permission, SessionPermission::managed) << session.title;
  }
}

}  // namespace
}  // namespace velmora
