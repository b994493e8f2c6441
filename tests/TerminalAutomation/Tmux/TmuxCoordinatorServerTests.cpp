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

/// Runs the tmux program and counts how often.
class CountingTransport final : public TmuxTransport {
 public:
  CountingTransport(std::unique_ptr<TmuxTransport> inner, std::atomic<int>& programs)
      : inner_(std::move(inner)), programs_(programs) {}

  TmuxAnswer run(const TmuxInvocation& invocation) override {
    ++programs_;
    return inner_->run(invocation);
  }
  std::string socketPath() const override { return inner_->socketPath(); }
  void cancel() noexcept override { inner_->cancel(); }

 private:
  const std::unique_ptr<TmuxTransport> inner_;
  std::atomic<int>& programs_;
};

class TmuxCoordinator : public testing::PrivateTmux {
 protected:
  BridgeCoordinator& coordinator() {
    if (!coordinator_) {
      TmuxParts parts = TmuxParts::ofSystem(options());
      parts.transport = std::make_unique<CountingTransport>(std::move(parts.transport), programs_);
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
  const auto id = onlySession();
  auto& core = coordinator();
  const auto request = Uuid::random;
  EXPECT_EQ(programsOf([&] { return core.status(request(), client_); }), 1);
  EXPECT_EQ(programsOf([&] { return core.listSessions(request(), client_, {}); }), 1);
  EXPECT_EQ(programsOf([&] { return core.sendCommand(request(), client_, {id, ":"}); }), 2);
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

}  // namespace
}  // namespace velmora
