// What one command costs at the two transports: over the server's socket, and by the tmux program. Both ask
// the same private server by turns, so their ratio holds on any machine.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "TerminalAutomation/Tmux/Direct/TmuxSocketTransport.h"
#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"
#include "benchmarks/SideBySide.h"

namespace velmora {
namespace {

/// A server of 13 panes; the first one's history has 50,000 lines.
class Server {
 public:
  Server() {
    std::string name = "/tmp/velmora-benchmark-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    folder_ = name;
    std::ofstream(folder_ / "configuration") << "set -g history-limit 50000\n";
    const Environment environment{{"PATH", getenv("PATH")}, {"HOME", folder_.string()}, {"SHELL", "/bin/sh"}};
    const auto choose = [&](TmuxTransportChoice choice) {
      return makeTmuxTransport(choice, environment, folder_ / "s", std::nullopt, Log());
    };
    program_ = choose(TmuxTransportChoice::program);
    socket_ = choose(TmuxTransportChoice::automatic);
    run(*program_, {"-f", folder_ / "configuration", "new-session", "-d", "-x", "100", "-y", "40",
                    "seq -f 'line %g of a long history 0123456789' 60000; exec sleep 100000"});
    for (int pane = 1; pane < 13; ++pane) run(*program_, {"new-window", "-d", "exec sleep 100000"});
    while (run(*program_, {"capture-pane", "-p", "-t", "%0"}).output.find("line 60000 ") ==
           std::string::npos) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    pane_ = parseListing(run(*program_, paneListing()).output)->panes.front();
  }
  ~Server() {
    run(*program_, {"kill-server"});
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  static TmuxAnswer run(TmuxTransport& transport, std::vector<std::string> arguments,
                        std::optional<std::string> input = std::nullopt) {
    return transport.run({.arguments = std::move(arguments),
                          .standardInput = std::move(input),
                          .deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1)});
  }

  TmuxTransport& program() { return *program_; }
  TmuxTransport& socket() { return *socket_; }
  const PaneRow& pane() const { return pane_; }

 private:
  std::filesystem::path folder_;
  std::unique_ptr<TmuxTransport> program_;
  std::unique_ptr<TmuxTransport> socket_;
  PaneRow pane_{};
};

void compare(benchmark::State& state, const std::vector<std::string>& arguments, double budget) {
  Server server;
  const auto ask = [&](TmuxTransport& transport) {
    return [&] { benchmark::DoNotOptimize(Server::run(transport, arguments)); };
  };
  report(state, runSideBySide(state, 1, ask(server.socket()), ask(server.program())), Compare::ratio, budget);
}

void listSessions(benchmark::State& state) { compare(state, {"list-sessions"}, 0.2); }

void listPanes(benchmark::State& state) {
  compare(state, {"list-panes", "-a", "-F", paneRowFormat(), ";", "list-clients", "-F", clientRowFormat()},
          0.5);
}

void type(benchmark::State& state) {
  Server server;
  const PaneCommand command = typeText(server.pane(), "", "benchmark");
  const auto ask = [&](TmuxTransport& transport) {
    return
        [&] { benchmark::DoNotOptimize(Server::run(transport, command.arguments, command.standardInput)); };
  };
  report(state, runSideBySide(state, 1, ask(server.socket()), ask(server.program())), Compare::ratio, 0.3);
}

/// The last `range` lines of the first pane.
void capture(benchmark::State& state) {
  const std::string first = std::to_string(40 - state.range(0));
  compare(state, {"capture-pane", "-p", "-J", "-S", first, "-t", "%0"}, state.range(0) == 40 ? 0.2 : 0);
}

/// `threads` at once, each asking again and again; what is reported is microseconds a call.
void together(benchmark::State& state) {
  Server server;
  const auto threads = static_cast<int>(state.range(0));
  const auto askAll = [&](TmuxTransport& transport) {
    return [&] {
      std::vector<std::thread> workers;
      for (int worker = 0; worker < threads; ++worker) {
        workers.emplace_back([&] {
          for (int call = 0; call < 10; ++call) Server::run(transport, {"capture-pane", "-p", "-t", "%0"});
        });
      }
      for (std::thread& worker : workers) worker.join();
    };
  };
  report(state, runSideBySide(state, 1, askAll(server.socket()), askAll(server.program())), Compare::ratio,
         0);
}

BENCHMARK(listSessions)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(listPanes)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(type)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(capture)->Arg(40)->Arg(2'000)->Arg(50'000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(together)->Arg(4)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velmora
