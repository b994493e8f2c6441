// A tmux that answers as the test says, and remembers what it was asked.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "TerminalAutomation/Tmux/TmuxRows.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"

namespace velmora::testing {

/// The line of the server that has `row`, as tmux prints it for serverRowFormat().
inline std::string serverLine(const PaneRow& row) {
  return "S\t" + std::to_string(row.serverProcess) + "\t" + std::to_string(row.serverStart) + "\t" +
         row.version + "\t" + row.host + "\n";
}

/// A row as tmux prints it for paneRowFormat().
inline std::string paneLine(const PaneRow& row) {
  const auto flag = [](bool value) { return std::string(value ? "1" : "0"); };
  std::string line = "R";
  for (const std::string& field : {"$" + std::to_string(row.session),
                                   "@" + std::to_string(row.window),
                                   "%" + std::to_string(row.pane),
                                   std::to_string(row.windowNumber),
                                   std::to_string(row.paneNumber),
                                   row.tty,
                                   std::to_string(row.process),
                                   flag(row.dead),
                                   flag(row.inputOff),
                                   flag(row.synchronized),
                                   flag(row.applicationCursor),
                                   flag(row.active),
                                   flag(row.made),
                                   flag(row.shown),
                                   std::to_string(row.stackIndex),
                                   std::to_string(row.sessionActivity),
                                   std::to_string(row.cursorColumn),
                                   std::to_string(row.cursorRow),
                                   std::to_string(row.historySize),
                                   row.program,
                                   row.sessionName,
                                   row.windowName,
                                   row.title}) {
    line += "\t" + field;
  }
  return line + "\n";
}

/// The answer to paneListing() of a server with this one pane.
inline std::string paneAnswer(const PaneRow& row) { return serverLine(row) + paneLine(row); }

inline std::string clientLine(const ClientRow& row) {
  return "C\t" + std::to_string(row.activity) + "\t" + std::to_string(row.created) + "\t$" +
         std::to_string(row.session) + "\t@" + std::to_string(row.window) + "\t%" + std::to_string(row.pane) +
         "\t" + row.name + "\n";
}

/// A pane of tmux 3.3a that is its window's active one.
inline PaneRow samplePane(std::int64_t pane, std::int64_t window, std::int64_t session = 0) {
  return {.serverProcess = 100,
          .serverStart = 1'700'000'000,
          .version = "3.3a",
          .host = "desk",
          .session = session,
          .window = window,
          .pane = pane,
          .tty = "/dev/pts/" + std::to_string(pane),
          .process = static_cast<pid_t>(1'000 + pane),
          .active = true,
          .stackIndex = window,
          .sessionActivity = 500,
          .cursorColumn = 2,
          .program = "bash",
          .sessionName = "s" + std::to_string(session),
          .windowName = "shell",
          .title = "desk"};
}

class ScriptedTransport final : public TmuxTransport {
 public:
  struct State {
    std::deque<TmuxAnswer> answers;  ///< The last one is given again and again.
    std::vector<TmuxInvocation> invocations;
    std::function<void()> composing = [] {};  ///< What happens before tmux answers.
  };

  explicit ScriptedTransport(State& state) : state_(state) {}

  TmuxAnswer run(const TmuxInvocation& invocation) override {
    state_.invocations.push_back(invocation);
    if (invocation.meanwhile) invocation.meanwhile();
    state_.composing();
    if (state_.answers.empty()) return {};
    TmuxAnswer answer = state_.answers.front();
    if (state_.answers.size() > 1) state_.answers.pop_front();
    return answer;
  }
  std::string socketPath() const override { return "/nowhere/socket"; }
  void cancel() noexcept override {}

 private:
  State& state_;
};

class ScriptedProcesses final : public ProcessTable {
 public:
  struct State {
    std::map<pid_t, ProcessState> states;
    std::set<pid_t> unseen{};  ///< Those that run and cannot be looked at.
    std::map<pid_t, std::vector<std::string>> arguments;
    std::map<std::string, TerminalMode> modes;
  };

  explicit ScriptedProcesses(const State& state) : state_(state) {}

  std::optional<ProcessState> state(pid_t process) const override {
    const auto found = state_.states.find(process);
    return found == state_.states.end() ? std::nullopt : std::optional(found->second);
  }
  bool hasEnded(pid_t process) const override {
    return state_.states.count(process) == 0 && state_.unseen.count(process) == 0;
  }
  std::vector<std::string> arguments(pid_t process) const override {
    const auto found = state_.arguments.find(process);
    return found == state_.arguments.end() ? std::vector<std::string>{} : found->second;
  }
  std::optional<TerminalMode> terminalMode(const std::string& tty) const override {
    const auto found = state_.modes.find(tty);
    return found == state_.modes.end() ? std::nullopt : std::optional(found->second);
  }
  std::size_t longestCollectedLine() const override { return 10; }

 private:
  const State& state_;
};

class ScriptedDesktop final : public DesktopTerminal {
 public:
  struct State {
    bool opens = false;
    std::vector<std::vector<std::string>> opened;
  };

  explicit ScriptedDesktop(State& state) : state_(state) {}

  bool open(const std::vector<std::string>& command) override {
    state_.opened.push_back(command);
    return state_.opens;
  }

 private:
  State& state_;
};

}  // namespace velmora::testing
