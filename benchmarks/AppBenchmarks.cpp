// The application with its window, drawn in memory: its start, its size, what its poll costs when nothing
// happens, and how fast the history is searched.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <thread>

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "VelmoraApp/RecentRequests/RecordListModel.h"
#include "benchmarks/ProcessFigures.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

// The application over a tmux server of its own, with its first frame drawn.
struct App {
  enum class Window { shown, hidden };

  explicit App(Window window = Window::shown) {
    tmux({"-f", "/dev/null", "new-session", "-d"});
    testing::writeFile(directory / ".config/Velmora/Velmora.conf", "[General]\nonboardingCompleted=true\n");
    started = std::chrono::steady_clock::now();
    std::vector<std::string> command{VELMORA_BIN "/AppThatTells"};
    if (window == Window::hidden) command.emplace_back("hidden");
    program = std::make_unique<testing::ChildProgram>(std::move(command), environment);
    if (!program->readLine()) throw std::runtime_error("the application drew nothing");
    drawn = std::chrono::steady_clock::now();
  }
  ~App() {
    program->signal(SIGTERM);
    program->wait();
    tmux({"kill-server"});
  }

  void tmux(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "tmux");
    testing::ChildProgram(std::move(arguments), environment).wait();
  }

  TemporaryDirectory directory;
  Environment environment{{"HOME", directory.path().string()},
                          {"PATH", "/usr/bin:/bin"},
                          {"SHELL", "/bin/sh"},
                          {"LC_ALL", "C.UTF-8"},
                          {"QT_QPA_PLATFORM", "offscreen"},
                          {"XDG_RUNTIME_DIR", directory.path().string()},
                          {"TMUX_TMPDIR", directory.path().string()}};
  std::chrono::steady_clock::time_point started;
  std::chrono::steady_clock::time_point drawn;
  std::unique_ptr<testing::ChildProgram> program;
};

void startToFirstFrame(benchmark::State& state) {
  double total = 0;
  for (auto _ : state) {
    const App app;
    const std::chrono::duration<double> duration = app.drawn - app.started;
    state.SetIterationTime(duration.count());
    total += duration.count();
    state.counters["rssMB"] = megabytesOf(app.program->process(), "VmRSS");
  }
  state.counters["value"] = 1000 * total / static_cast<double>(state.iterations());  // milliseconds
  state.counters["budget"] = 150;
}
BENCHMARK(startToFirstFrame)
    ->Name("app start to first frame")
    ->UseManualTime()
    ->Iterations(7)
    ->Unit(benchmark::kMillisecond);

void memory(benchmark::State& state) {
  const App app;
  for (auto _ : state) state.counters["value"] = megabytesOf(app.program->process(), "VmRSS");
  state.counters["budget"] = 60;
}
BENCHMARK(memory)->Name("app memory with its first frame, MB")->Iterations(1);

void idle(benchmark::State& state, App::Window window, double budget) {
  constexpr std::chrono::seconds settling{3};
  constexpr std::chrono::seconds watched{60};  // a clock tick is 0.017 percent
  const App app(window);
  std::this_thread::sleep_for(settling);
  const auto process = app.program->process();
  const auto before = ticksWithChildrenOf(process);
  for (auto _ : state) std::this_thread::sleep_for(watched);
  const double ticksPerSecond = static_cast<double>(ticksWithChildrenOf(process) - before) / watched.count();
  state.counters["value"] = 100 * ticksPerSecond / static_cast<double>(::sysconf(_SC_CLK_TCK));
  state.counters["budget"] = budget;
  state.counters["rssMB"] = megabytesOf(process, "VmRSS");
  state.counters["anonymousMB"] = megabytesOf(process, "RssAnon");
}
BENCHMARK_CAPTURE(idle, shown, App::Window::shown, 1)
    ->Name("app idle, percent of one core")
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(idle, hidden, App::Window::hidden, 0.1)
    ->Name("app idle with its window hidden, percent of one core")
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

std::vector<MCPRequestRecord> records(std::uint64_t count) {
  std::vector<MCPRequestRecord> result;
  for (std::uint64_t number = 0; number < count; ++number) {
    result.push_back({.requestId = testing::numberedUuid(number),
                      .receivedAt = {static_cast<double>(number)},
                      .client = {"an agent", "1.0"},
                      .toolName = number % 2 == 0 ? ToolName::sendCommand : ToolName::readOutput,
                      .sessionSnapshot = SessionReference{.sessionId = testing::numberedUuid(number % 7)},
                      .commandSummary = "make -j2 target-" + std::to_string(number) + " # 빌드",
                      .status = RequestStatus::delivered});
  }
  return result;
}

// One key press in the search field: the list goes from all records to those that match, and back. As the
// screen does it, which names the sessions of a copy first.
void search(benchmark::State& state) {
  const auto all = records(static_cast<std::uint64_t>(state.range(0)));
  const testing::FakeTime time;
  RecordListModel rows(time.clock());
  const auto show = [&](const std::string& query) {
    auto named = all;
    if (!query.empty()) named = HistoryQueryService::filter(named, {.query = query});
    rows.showRecords(std::move(named));
  };
  show("");
  const auto start = std::chrono::steady_clock::now();
  for (auto _ : state) {
    show("TARGET-7");
    show("");
  }
  // Milliseconds a change of the list.
  constexpr double changes = 2;
  state.counters["value"] = 1000 *
                            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() /
                            changes / static_cast<double>(state.iterations());
  state.counters["budget"] = 16;
}
BENCHMARK(search)->Name("search the history")->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velmora
