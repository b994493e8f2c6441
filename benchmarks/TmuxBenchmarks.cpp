// What the tmux adapter costs beside running tmux by hand: both do the same work on the same private
// server in turn, so their ratio holds on any machine.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"
#include "benchmarks/SideBySide.h"

extern char** environ;  // NOLINT: POSIX has no header for it

namespace velmora {
namespace {

/// Runs tmux the plain way: a pipe in, a pipe out, a wait.
std::string byHand(const std::string& socket, const std::vector<std::string>& arguments,
                   const std::string& input = {}) {
  std::array<int, 2> in{};
  std::array<int, 2> out{};
  if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) std::abort();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  std::vector<std::string> words{"tmux", "-u", "-S", socket};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t process = 0;
  if (posix_spawnp(&process, "tmux", &actions, nullptr, pointers.data(), environ) != 0) std::abort();
  posix_spawn_file_actions_destroy(&actions);
  close(in[0]);
  close(out[1]);
  if (write(in[1], input.data(), input.size()) != static_cast<ssize_t>(input.size())) std::abort();
  close(in[1]);
  std::string output;
  std::array<char, 65536> block;
  ssize_t count = 0;
  while ((count = read(out[0], block.data(), block.size())) > 0) {
    output.append(block.data(), static_cast<std::size_t>(count));
  }
  close(out[0]);
  waitpid(process, nullptr, 0);
  return output;
}

/// A server with `panes` shells at their prompts; the first one's history has `lines` lines.
class Server {
 public:
  Server(std::int64_t panes, std::int64_t lines) {
    std::string name = "/tmp/velmora-benchmark-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    folder_ = name;
    socket_ = (folder_ / "s").string();
    std::ofstream(folder_ / "configuration") << "set -g history-limit 300000\n";
    std::ofstream content(folder_ / "content");
    for (std::int64_t i = 1; i <= lines; ++i) content << "line " << i << " of a long history 0123456789\n";
    content.close();
    const std::string first =
        lines > 0 ? "cat " + (folder_ / "content").string() + "; exec sleep 100000" : "exec dash";
    byHand(socket_,
           {"-f", (folder_ / "configuration").string(), "new-session", "-d", "-x", "100", "-y", "30", first});
    for (std::int64_t i = 1; i < panes; ++i)
      byHand(socket_, {"new-window", "-d", i % 2 == 0 ? "exec dash" : "exec bash --norc"});
    const std::string last = "line " + std::to_string(lines) + " ";
    while (lines > 0 && byHand(socket_, {"capture-pane", "-p", "-t", "%0"}).find(last) == std::string::npos) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    terminal_ =
        makeTmuxTerminal(TmuxOptions{.environment = {{"PATH", getenv("PATH")}, {"HOME", folder_.string()}},
                                     .socketPath = socket_,
                                     .temporaryDirectory = folder_,
                                     .homeDirectory = folder_});
  }
  ~Server() {
    terminal_.reset();
    byHand(socket_, {"kill-server"});
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  const std::string& socket() const { return socket_; }
  SerialTerminal& terminal() { return *terminal_; }

 private:
  std::filesystem::path folder_;
  std::string socket_;
  std::unique_ptr<SerialTerminal> terminal_;
};

double budgetAt(const benchmark::State& state, std::int64_t size, double budget) {
  return state.range(0) == size ? budget : 0;
}

void list(benchmark::State& state) {
  Server server(state.range(0), 0);
  report(state,
         runSideBySide(
             state, 1, [&] { benchmark::DoNotOptimize(server.terminal().listSessions().get()); },
             [&] {
               benchmark::DoNotOptimize(byHand(server.socket(), {"list-panes", "-a", "-F", paneRowFormat()}));
             }),
         Compare::ratio, budgetAt(state, 10, 1.15));
}

// As a tool call does it: a listing, then the deed. By hand the same two programs are run.

void send(benchmark::State& state) {
  Server server(state.range(0), 0);
  const auto deed = [&] {
    const auto tab = server.terminal().listSessions().get().back();
    server.terminal().send(":", tab.tty, tab.windowId, /*allowBusy=*/true).get();
  };
  const auto byHandDeed = [&] {
    const auto listing = parseListing(byHand(server.socket(), {"list-panes", "-a", "-F", paneRowFormat()}));
    const PaneCommand command = typeText(listing->panes.back(), ":", "by-hand");
    byHand(server.socket(), command.arguments, command.standardInput);
  };
  report(state, runSideBySide(state, 1, deed, byHandDeed), Compare::ratio, budgetAt(state, 10, 1.2));
}

void read(benchmark::State& state) {
  Server server(1, state.range(0));
  const auto deed = [&] {
    const auto tab = server.terminal().listSessions().get().front();
    benchmark::DoNotOptimize(
        server.terminal().readOutput(OutputSource::history, 12'000, tab.tty, tab.windowId).get());
  };
  const auto byHandDeed = [&] {
    byHand(server.socket(), {"list-panes", "-a", "-F", paneRowFormat()});
    benchmark::DoNotOptimize(byHand(server.socket(), {"capture-pane", "-p", "-J", "-S", "-", "-t", "%0"}));
  };
  report(state, runSideBySide(state, 1, deed, byHandDeed), Compare::ratio, budgetAt(state, 200'000, 1.5));
}

BENCHMARK(list)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(send)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(read)->Arg(2'000)->Arg(50'000)->Arg(200'000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velmora
