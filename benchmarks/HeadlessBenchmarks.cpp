// The program `velmora-headless`: what it takes when nobody asks, and after many have asked at once.
#include <atomic>
#include <thread>

#include "LocalControl/LocalControlClient.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "benchmarks/ProcessFigures.h"
#include "benchmarks/SideBySide.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

struct Headless {
  Headless() {
    if (!program.readLine()) throw std::runtime_error("velmora-headless did not start");
  }
  ~Headless() {
    program.signal(SIGTERM);
    program.wait();
  }
  std::filesystem::path socket() const {
    return directory / UnixSocketEndpoint::directoryName / UnixSocketEndpoint::fileName;
  }

  TemporaryDirectory directory;
  testing::ChildProgram program{{VELMORA_BIN "/velmora-headless"},
                                {{"HOME", directory.path().string()},
                                 {"PATH", "/usr/bin:/bin"},
                                 {"XDG_RUNTIME_DIR", directory.path().string()},
                                 {"TMUX_TMPDIR", directory.path().string()}}};
};

void idle(benchmark::State& state) {
  const Headless headless;
  const auto process = headless.program.process();
  const auto before = ticksOf(process);
  for (auto _ : state) std::this_thread::sleep_for(std::chrono::seconds(3));
  state.counters["ticks"] = static_cast<double>(ticksOf(process) - before);
  state.counters["value"] = megabytesOf(process, "VmRSS");
  state.counters["anonymousMB"] = megabytesOf(process, "RssAnon");
  state.counters["budget"] = 12;
}
BENCHMARK(idle)->Iterations(1)->Unit(benchmark::kMillisecond);

constexpr int connectionCount = 64;
constexpr int requestsPerConnection = 157;  // 10,048 in all

// Returns how many requests were answered.
int askAtOnce(const std::filesystem::path& socket, LocalControlRequest request) {
  std::atomic<int> answered = 0;
  std::vector<std::thread> clients;
  for (int number = 0; number < connectionCount; ++number) {
    clients.emplace_back([&, request]() mutable {
      LocalControlClient client(socket);
      for (int i = 0; i < requestsPerConnection; ++i) {
        request.requestId = Uuid::random();
        if (client.send(request).requestId == request.requestId) ++answered;
      }
    });
  }
  for (auto& client : clients) client.join();
  return answered;
}

// The second thousands must not take more than the first: `value` is the growth between them.
void manyConnections(benchmark::State& state, LocalControlRequest request) {
  const Headless headless;
  const auto process = headless.program.process();
  const auto descriptors = entriesOf(process, "fd");
  int lost = connectionCount * requestsPerConnection - askAtOnce(headless.socket(), request);
  const double before = megabytesOf(process, "VmRSS");
  for (auto _ : state) {
    lost += connectionCount * requestsPerConnection - askAtOnce(headless.socket(), request);
  }
  testing::eventually([&] { return entriesOf(process, "fd") <= descriptors; });
  state.SetItemsProcessed(connectionCount * requestsPerConnection * state.iterations());
  state.counters["lost"] = lost;
  state.counters["descriptorGrowth"] = static_cast<double>(entriesOf(process, "fd") - descriptors);
  state.counters["threads"] = static_cast<double>(entriesOf(process, "task"));
  state.counters["rssMB"] = megabytesOf(process, "VmRSS");
  state.counters["rssGrowthMB"] = megabytesOf(process, "VmRSS") - before;
}
BENCHMARK_CAPTURE(manyConnections, anotherVersion,
                  {.protocolVersion = 2, .client = {"benchmark", std::nullopt, 1}})
    ->Iterations(3)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(manyConnections, badArguments,
                  {.client = {"benchmark", std::nullopt, 1}, .operation = ToolName::sendKey})
    ->Iterations(3)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velmora
