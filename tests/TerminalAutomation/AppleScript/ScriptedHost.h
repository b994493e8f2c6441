// A script that answers as the test says and remembers what it was asked, and a tool runner that does.
#pragma once

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "TerminalAutomation/AppleScript/AppleScriptOperations.h"

namespace velmora::testing {

inline ScriptDescriptor scriptText(std::string text) { return {.text = std::move(text)}; }
inline ScriptDescriptor scriptNumber(std::int32_t number) {
  return {.text = std::to_string(number), .integer = number};
}
inline ScriptDescriptor scriptFlag(bool flag) { return {.text = flag ? "true" : "false", .boolean = flag}; }
inline ScriptDescriptor scriptList(std::vector<ScriptDescriptor> items) {
  return {.items = std::move(items)};
}

/// A tab row of `length` items at most.
inline ScriptDescriptor scriptRow(const std::string& tty, std::size_t length = 7) {
  auto row = scriptList({scriptText(tty), scriptNumber(41), scriptNumber(2), scriptNumber(3),
                         scriptText("제목"), scriptFlag(true), scriptFlag(false)});
  row.items.resize(length);
  return row;
}

/// The memory outlives the host, which its adapter owns.
class ScriptedHost final : public ScriptHost {
 public:
  struct Call {
    std::string handler;
    std::vector<ScriptArgument> arguments;

    bool operator==(const Call&) const = default;
  };
  struct State {
    bool compiles = true;
    std::string source{};
    std::map<std::string, ScriptReply> replies{};  ///< By handler; without one it answers nothing.
    std::vector<Call> calls{};
    /// What the system answers about consent: each number once, the last one for ever.
    std::deque<std::int64_t> consents{consentStatus::granted};
    std::vector<std::string> consentQuestions{};  ///< Bundle identifiers, with "?" when the user is asked.
    std::function<void()> duringCall = [] {};
    Deadline deadline{};  ///< Of the last call.
    bool cancelled = false;
    std::thread::id compiledOn{};
    std::vector<std::thread::id> threads{};  ///< That called.
  };

  explicit ScriptedHost(State& state) : state_(state) {}

  bool compile(const std::string& source) override {
    state_.source = source;
    state_.compiledOn = std::this_thread::get_id();
    return state_.compiles;
  }
  ScriptReply call(const std::string& handler, const std::vector<ScriptArgument>& arguments,
                   Deadline deadline) override {
    state_.deadline = deadline;
    state_.calls.push_back({handler, arguments});
    state_.threads.push_back(std::this_thread::get_id());
    state_.duringCall();
    return state_.replies[handler];
  }
  std::int64_t consent(const std::string& bundleIdentifier, bool asksUser, Deadline) override {
    state_.consentQuestions.push_back(bundleIdentifier + (asksUser ? "?" : ""));
    const auto answer = state_.consents.front();
    if (state_.consents.size() > 1) state_.consents.pop_front();
    return answer;
  }
  void cancel() noexcept override { state_.cancelled = true; }

 private:
  State& state_;
};

/// Plays the screen-capture tool.
class ScriptedPrograms final : public ProgramRunner {
 public:
  struct State {
    int status = 0;
    bool writesFile = true;  ///< To the last argument.
    bool starts = true;
    bool cancelled = false;
    std::chrono::steady_clock::time_point deadline{};  ///< Of the last run.
    std::vector<std::vector<std::string>> runs{};      ///< Program, then arguments.
  };

  explicit ScriptedPrograms(State& state) : state_(state) {}

  int run(const std::string& program, const std::vector<std::string>& arguments,
          std::chrono::steady_clock::time_point deadline) override {
    state_.deadline = deadline;
    if (!state_.starts) throw std::system_error(ENOENT, std::generic_category(), program);
    auto& run = state_.runs.emplace_back(arguments);
    run.insert(run.begin(), program);
    if (state_.writesFile) std::ofstream(arguments.back()) << "png";
    return state_.status;
  }
  void cancel() noexcept override { state_.cancelled = true; }

 private:
  State& state_;
};

}  // namespace velmora::testing
