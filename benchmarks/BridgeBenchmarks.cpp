// A tool call all the way, as an agent meets it: through `velmora` and `velmora-headless` to a real tmux with
// every guard on, beside the one tmux program that does the same by hand.
#include <benchmark/benchmark.h>
#include <time.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "TerminalAutomation/Tmux/TmuxRows.h"
#include "benchmarks/PlainTmux.h"
#include "benchmarks/ProcessFigures.h"
#include "benchmarks/SideBySide.h"
#include "tests/support/ChildProgram.h"

namespace velmora {
namespace {

using testing::ChildProgram;

/// A tmux server, a bridge and a helper. Belongs to one thread. A call that is not answered well throws.
class Agent {
 public:
  Agent(std::int64_t panes, std::int64_t lines) : tmux_(panes, lines) {
    if (!bridge_.readLine()) throw std::runtime_error("velmora-headless did not start");
    helper_ = std::make_unique<ChildProgram>(std::vector<std::string>{VELMORA_BIN "/velmora"}, environment());
    helper_->write(
        R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-11-25",)"
        R"("capabilities":{},"clientInfo":{"name":"benchmark","version":"1.0"}}})"
        "\n");
    helper_->readLine();
    const std::string listing = call("terminal_list_sessions");
    const std::string key = R"(\"sessionId\":\")";
    for (auto at = listing.find(key); at != std::string::npos; at = listing.find(key, at + 1)) {
      sessions_.push_back(listing.substr(at + key.size(), 36));
    }
    if (sessions_.size() != static_cast<std::size_t>(panes)) throw std::runtime_error(listing);
  }
  ~Agent() {
    helper_->closeInput();
    helper_->wait();
    bridge_.signal(SIGTERM);
    bridge_.wait();
  }
  Agent(const Agent&) = delete;
  Agent& operator=(const Agent&) = delete;

  std::string call(const std::string& tool, const std::string& arguments = "") {
    return calls(1, tool, arguments);
  }

  /// Writes `count` calls together and returns the last answer.
  std::string calls(int count, const std::string& tool, const std::string& arguments = "") {
    std::string text;
    for (int i = 0; i < count; ++i) {
      text += R"({"jsonrpc":"2.0","id":)" + std::to_string(++id_) +
              R"(,"method":"tools/call","params":{"name":")" + tool + R"(","arguments":{)" + arguments +
              "}}}\n";
    }
    helper_->write(text);
    std::optional<std::string> answer;
    for (int i = 0; i < count; ++i) {
      answer = helper_->readLine();
      if (!answer || !answer->ends_with(R"("isError":false}})")) {
        throw std::runtime_error(answer.value_or("no answer"));
      }
    }
    return *answer;
  }

  /// Waits until the shell at `place` of the listing waits at its prompt.
  void awaitPrompt(std::size_t place) {
    while (call("terminal_list_sessions", R"("includeBusy":false)").find(sessions_.at(place)) ==
           std::string::npos) {
    }
  }

  const std::filesystem::path& folder() const { return tmux_.folder(); }
  const std::string& socket() const { return tmux_.socket(); }
  /// The argument that names the session at `place` of the listing.
  std::string session(std::size_t place) const { return R"("sessionId":")" + sessions_.at(place) + '"'; }
  std::vector<pid_t> processes() const { return {bridge_.process(), helper_->process()}; }

 private:
  Environment environment() const {
    return {{"HOME", tmux_.folder().string()},
            {"PATH", "/usr/bin:/bin"},
            {"XDG_RUNTIME_DIR", tmux_.folder().string()},
            {"TMUX_TMPDIR", tmux_.folder().string()}};
  }

  const PlainTmux tmux_;
  // Its log has a line for each command, and nobody to read it here.
  ChildProgram bridge_{{"/bin/sh", "-c", "exec " VELMORA_BIN "/velmora-headless 2>/dev/null"}, environment()};
  std::unique_ptr<ChildProgram> helper_;
  std::vector<std::string> sessions_;
  int id_ = 0;
};

template <class Action>
void compare(
    benchmark::State& state, Agent& agent, const Action& action, const std::vector<std::string>& plain,
    double budget, const std::function<void()>& before = [] {}) {
  report(state,
         runSideBySide(
             state, 1, action, [&] { benchmark::DoNotOptimize(byHand(agent.socket(), plain)); }, before),
         Compare::ratio, budget);
}

void send(benchmark::State& state) {
  Agent agent(13, 0);
  // Each command leaves a byte: the next one waits until the last has run and the prompt is there again.
  const std::filesystem::path ran = agent.folder() / "ran";
  const std::string arguments = agent.session(1) + R"(,"command":"printf . >>)" + ran.string() + R"(")";
  std::uintmax_t sent = 0;
  const auto awaitPrompt = [&] {
    std::error_code notYet;
    while (sent > 0 && std::filesystem::file_size(ran, notYet) != sent) {
    }
    ++sent;
    agent.awaitPrompt(1);
  };
  compare(
      state, agent, [&] { agent.call("terminal_send_command", arguments); },
      {"send-keys", "-t", "%2", ":", "Enter"}, 0.5, awaitPrompt);
}

void readVisible(benchmark::State& state) {
  Agent agent(13, 2'000);
  const std::string arguments = agent.session(0) + R"(,"source":"visible")";
  compare(
      state, agent, [&] { agent.call("terminal_read_output", arguments); },
      {"capture-pane", "-p", "-t", "%0"}, 0.5);
}

void readHistory(benchmark::State& state) {
  Agent agent(13, 2'000);
  const std::string arguments = agent.session(0) + R"(,"source":"history","maxCharacters":50000)";
  compare(
      state, agent, [&] { agent.call("terminal_read_output", arguments); },
      {"capture-pane", "-p", "-S", "-", "-t", "%0"}, 0.9);
}

void listsInFlight(benchmark::State& state) {
  Agent agent(13, 0);
  constexpr int count = 8;
  const auto plain = [&] {
    std::vector<std::thread> loops;
    for (int i = 0; i < count; ++i) {
      loops.emplace_back([&] { byHand(agent.socket(), {"list-panes", "-a", "-F", paneRowFormat()}); });
    }
    for (std::thread& loop : loops) loop.join();
  };
  report(state,
         runSideBySide(
             state, 1, [&] { agent.calls(count, "terminal_list_sessions"); }, plain),
         Compare::ratio, 0.5);
}

double processorMilliseconds(const Agent& agent) {
  double sum = 0;
  for (const pid_t process : agent.processes()) {
    clockid_t clock{};
    timespec used{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &used) != 0) std::abort();
    sum += static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
  }
  return sum;
}

void list(benchmark::State& state) {
  Agent agent(state.range(0), 0);
  const double before = processorMilliseconds(agent);
  compare(
      state, agent, [&] { agent.call("terminal_list_sessions"); },
      {"list-panes", "-a", "-F", paneRowFormat()}, state.range(0) == 13 ? 0.5 : 1.3);
  state.counters["cpuMs"] = (processorMilliseconds(agent) - before) / static_cast<double>(state.iterations());
}

/// PSS, so that what other programs share counts by its share.
double megabytesTogether(const Agent& agent) {
  double kilobytes = 0;
  for (const pid_t process : agent.processes()) {
    std::ifstream figures("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string line; std::getline(figures, line);) {
      if (line.starts_with("Pss:")) kilobytes += std::stod(line.substr(4));
    }
  }
  return kilobytes / 1024;
}

/// What 1,000 calls cost: the processor's milliseconds of each, and the memory of both programs afterwards.
void thousandCalls(benchmark::State& state, bool memory) {
  Agent agent(13, 0);
  const double before = processorMilliseconds(agent);
  for (auto _ : state) {
    for (int i = 0; i < 250; ++i) {
      agent.call("terminal_status");
      agent.call("terminal_list_sessions");
      agent.call("terminal_send_key", agent.session(1) + R"(,"key":"escape")");
      agent.call("terminal_read_output", agent.session(1) + R"(,"source":"visible")");
    }
  }
  state.counters["value"] =
      memory ? megabytesTogether(agent) : (processorMilliseconds(agent) - before) / 1'000;
  state.counters["budget"] = memory ? 9 : 0.5;
}

BENCHMARK(list)->Arg(13)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(send)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readVisible)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readHistory)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(listsInFlight)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thousandCalls, processor, false)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thousandCalls, memory, true)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velmora
