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
const std::string listTools = R"({"jsonrpc":"2.0","id":1,"method":"tools/list"})"
                              "\n";

Environment environmentIn(const TemporaryDirectory& directory) {
  return {{"HOME", directory.path().string()}, {"XDG_RUNTIME_DIR", directory.path().string()}};
}

// Starts the program, has it answer one message, and returns its peak memory.
double megabytesToAnswer(const char* program, const Environment& environment, const std::string& message) {
  ChildProgram child({program}, environment);
  child.write(message);
  if (!child.readLine()) throw std::runtime_error("no answer");
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
      [&] { megabytes.push_back(megabytesToAnswer(VELMORA_BIN "/velmora", environment, message)); },
      [&] { plainMegabytes.push_back(megabytesToAnswer(VELMORA_BIN "/BareStdio", environment, message)); });
  report(state, result, Compare::ratio, /*budget=*/2);
  state.counters["rssMB"] = median(std::move(megabytes));
  state.counters["plainRssMB"] = median(std::move(plainMegabytes));
}
BENCHMARK_CAPTURE(startToAnswer, initialize, initialize)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(startToAnswer, toolsList, listTools)->UseManualTime()->Unit(benchmark::kMillisecond);

// The helper connects anew for each call, and so does the call that it is compared with. `keepConnection`
// compares it with a client that stays connected, which shows what the connecting costs; no budget is set for
// that.
void callThroughHelper(benchmark::State& state, bool keepConnection) {
  FakeBridge bridge;
  const auto socket = bridge.directory / UnixSocketEndpoint::directoryName / UnixSocketEndpoint::fileName;
  LocalControlServer server([&](const LocalControlRequest& request) { return bridge.router.route(request); },
                            socket);
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
      [&] {
        if (keepConnection) {
          benchmark::DoNotOptimize(kept.send(request));
        } else {
          benchmark::DoNotOptimize(LocalControlClient(socket).send(request));
        }
      });
  report(state, result, Compare::difference, keepConnection ? 0 : 50);
}
BENCHMARK_CAPTURE(callThroughHelper, againstANewConnection, false)->UseManualTime();
BENCHMARK_CAPTURE(callThroughHelper, againstAKeptConnection, true)->UseManualTime();

}  // namespace
}  // namespace velmora
