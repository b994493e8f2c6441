// What the tmux adapter costs beside running tmux by hand: both do the same work on the same private
// server in turn, so their ratio holds on any machine.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"
#include "benchmarks/PlainTmux.h"
#include "benchmarks/SideBySide.h"

namespace velmora {
namespace {

/// A plain server and the adapter for it.
struct Server {
  Server(std::int64_t panes, std::int64_t lines)
      : tmux(panes, lines),
        terminal(makeTmuxTerminal(
            TmuxOptions{.environment = {{"PATH", getenv("PATH")}, {"HOME", tmux.folder().string()}},
                        .socketPath = tmux.socket(),
                        .temporaryDirectory = tmux.folder(),
                        .homeDirectory = tmux.folder()})) {}

  PlainTmux tmux;
  std::unique_ptr<SerialTerminal> terminal;
};

double budgetAt(const benchmark::State& state, std::int64_t size, double budget) {
  return state.range(0) == size ? budget : 0;
}

void list(benchmark::State& state) {
  Server server(state.range(0), 0);
  report(state,
         runSideBySide(
             state, 1, [&] { benchmark::DoNotOptimize(server.terminal->listSessions().get()); },
             [&] { benchmark::DoNotOptimize(byHand(server.tmux.socket(), paneListing())); }),
         Compare::ratio, budgetAt(state, 10, 1.15));
}

// As a tool call does it: a listing, then the deed. By hand the same two programs are run.

void send(benchmark::State& state) {
  Server server(state.range(0), 0);
  const auto deed = [&] {
    const auto tab = server.terminal->listSessions().get().back();
    server.terminal->send(":", tab.tty, tab.windowId, /*allowBusy=*/true).get();
  };
  const auto byHandDeed = [&] {
    const auto listing = parseListing(byHand(server.tmux.socket(), paneListing()));
    const PaneCommand command = typeText(listing->panes.back(), ":", "by-hand");
    byHand(server.tmux.socket(), command.arguments, command.standardInput);
  };
  report(state, runSideBySide(state, 1, deed, byHandDeed), Compare::ratio, budgetAt(state, 10, 1.2));
}

void read(benchmark::State& state) {
  Server server(1, state.range(0));
  const auto deed = [&] {
    const auto tab = server.terminal->listSessions().get().front();
    benchmark::DoNotOptimize(
        server.terminal->readOutput(OutputSource::history, 12'000, tab.tty, tab.windowId).get());
  };
  const auto byHandDeed = [&] {
    byHand(server.tmux.socket(), paneListing());
    benchmark::DoNotOptimize(
        byHand(server.tmux.socket(), {"capture-pane", "-p", "-J", "-S", "-", "-t", "%0"}));
  };
  report(state, runSideBySide(state, 1, deed, byHandDeed), Compare::ratio, budgetAt(state, 200'000, 1.5));
}

BENCHMARK(list)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(send)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(read)->Arg(2'000)->Arg(50'000)->Arg(200'000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velmora
