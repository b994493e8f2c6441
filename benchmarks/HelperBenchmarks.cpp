// The program `velmora`: how soon it answers, what it takes, and what it adds to a call.
#include "LocalControl/LocalControlClient.h"
#include "LocalControl/LocalControlServer.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "benchmarks/FakeBridge.h"
#include "benchmarks/ProcessFigures.h"
#include "benchmarks/SideBySide.h"
#include "tests/support/ChildProgram.h"

namespace velmora {
namespace {

using testing::ChildProgram;

const std::string initialize =
    R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-11-25",)"
    R"("capabilities":{},"clientInfo":{"name":"benchmark","version":"1.0"}}})"
    "\n";
// A request that stands for itself, of the stateless revision.
std::string stateless(const std::string& method) {
  return R"({"jsonrpc":"2.0","id":1,"method":")" + method +
         R"(","params":{"_meta":{"io.modelcontextprotocol/protocolVersion":"2026-07-28",)"
         R"("io.modelcontextprotocol/clientCapabilities":{}}}})"
         "\n";
}

Environment environmentIn(const TemporaryDirectory& directory) {
  return {{"HOME", directory.path().string()}, {"XDG_RUNTIME_DIR", directory.path().string()}};
}

// Starts the program, has it answer one message with a line that contains `expected`, and returns its peak
// memory.
double megabytesToAnswer(const std::vector<std::string>& command, const Environment& environment,
                         const std::string& message, const std::string& expected) {
  ChildProgram child(command, environment);
  child.write(message);
  const auto answer = child.readLine();
  if (!answer || answer->find(expected) == std::string::npos) throw std::runtime_error("no proper answer");
  const double megabytes = megabytesOf(child.process(), "VmHWM");
  child.signal(SIGKILL);
  return megabytes;
}

void startToAnswer(benchmark::State& state, const std::string& message) {
  const TemporaryDirectory directory;
  const auto environment = environmentIn(directory);
  std::vector<double> megabytes;
  std::vector<double> plainMegabytes;
  const auto result = runSideBySide(
      state, /*times=*/1,
      [&] {
        megabytes.push_back(
            megabytesToAnswer({VELMORA_BIN "/velmora"}, environment, message, R"("result":{)"));
      },
      [&] {
        plainMegabytes.push_back(
            megabytesToAnswer({VELMORA_BIN "/BareStdio"}, environment, message, R"("method")"));
      });
  report(state, result, Compare::ratio, /*budget=*/2);
  state.counters["rssMB"] = median(std::move(megabytes));
  state.counters["plainRssMB"] = median(std::move(plainMegabytes));
}
BENCHMARK_CAPTURE(startToAnswer, initialize, initialize)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(startToAnswer, discover, stateless("server/discover"))
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(startToAnswer, toolsList, stateless("tools/list"))
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// For scale, without a budget: what a server in Node takes that does nothing but answer.
void startOfNodeToAnswer(benchmark::State& state) {
  const TemporaryDirectory directory;
  auto environment = environmentIn(directory);
  environment["PATH"] = processEnvironment().at("PATH");
  std::vector<double> microseconds;
  std::vector<double> megabytes;
  for (auto _ : state) {
    microseconds.push_back(microsecondsOf(1, [&] {
      megabytes.push_back(
          megabytesToAnswer({"node", VELMORA_NODE_SERVER}, environment, initialize, R"("result":{)"));
    }));
    state.SetIterationTime(microseconds.back() / 1e6);
  }
  state.counters["medianUs"] = median(std::move(microseconds));
  state.counters["rssMB"] = median(std::move(megabytes));
}
BENCHMARK(startOfNodeToAnswer)->UseManualTime()->Unit(benchmark::kMillisecond);

// The helper keeps its connection, so the call that it is compared with does too.
void callThroughHelper(benchmark::State& state) {
  FakeBridge bridge;
  const auto socket = bridge.directory / UnixSocketEndpoint::directoryName / UnixSocketEndpoint::fileName;
  LocalControlServer server(
      [&](auto request, const auto& caller) { return bridge.router.answer(request, caller); }, socket);
  server.start();
  ChildProgram helper({VELMORA_BIN "/velmora"}, environmentIn(bridge.directory));
  helper.write(initialize);
  helper.readLine();
  const auto id = bridge.sessionId.toString();
  const std::string call = R"({"jsonrpc":"2.0","id":2,"method":"tools/call","params":{"name":)"
                           R"("terminal_send_key","arguments":{"sessionId":")" +
                           id + R"(","key":"Escape"}}})" + "\n";
  const auto request = bridge.withBadArguments();
  LocalControlClient kept(socket);
  constexpr int inARow = 50;
  const auto result = runSideBySide(
      state, inARow,
      [&] {
        helper.write(call);
        benchmark::DoNotOptimize(helper.readLine());
      },
      [&] { benchmark::DoNotOptimize(kept.send(request)); });
  report(state, result, Compare::difference, /*budget=*/50);
}
BENCHMARK(callThroughHelper)->UseManualTime();

}  // namespace
}  // namespace velmora
