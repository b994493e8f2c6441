#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::eventually;

struct BusyCase {
  std::string name;
  std::vector<std::string> program;  ///< Of the pane.
  std::vector<std::string> lines;    ///< Typed one after another.
  bool busy;
  std::string shows{};  ///< Once the lines have been read, where the pane tells.
};

void PrintTo(const BusyCase& busyCase, std::ostream* out) { *out << busyCase.name; }

class TmuxBusy : public testing::PrivateTmux, public ::testing::WithParamInterface<BusyCase> {};

TEST_P(TmuxBusy, IsToldFromTheProgramsInThePane) {
  const BusyCase& parameter = GetParam();
  startServer(parameter.program);
  const auto tab = onlyTab();
  const bool shell = parameter.program.size() == 1 && !parameter.program.front().ends_with(" 1000");
  if (shell) {
    ASSERT_TRUE(eventually([&] { return !isBusy(tab.tty); })) << "no prompt";
    // The shell answers once it reads its input; then the lines meet a shell at its prompt.
    sendTo(tab, "echo re''ady");
    ASSERT_TRUE(eventually([&] { return visibleText(tab).find("\nready") != std::string::npos; }));
    ASSERT_TRUE(eventually([&] { return !isBusy(tab.tty); }));
  }
  for (const std::string& line : parameter.lines) sendTo(tab, line);
  // A shell is looked at once it has done what was typed, as far as it tells: between two lines it is as
  // often busy as not.
  if (!parameter.shows.empty()) {
    ASSERT_TRUE(eventually([&] { return visibleText(tab).find(parameter.shows) != std::string::npos; }))
        << visibleText(tab);
  }
  // Until it is so, and then still. dash is on the processor for a moment before it starts a program, and off
  // it for another: one look alone may meet the shell before it has done what was typed.
  const auto fiveLooksAgree = [&] {
    for (int look = 0; look < 5; ++look) {
      if (isBusy(tab.tty) != parameter.busy) return false;
    }
    return true;
  };
  ASSERT_TRUE(eventually(fiveLooksAgree)) << visibleText(tab);
  EXPECT_TRUE(fiveLooksAgree()) << visibleText(tab);
}

const std::vector<std::string> bash{"exec bash"};
const std::vector<std::string> zsh{"exec zsh"};
const std::vector<std::string> fish{"exec fish"};
const std::vector<std::string> dash{"exec dash"};
const std::string marker = "\nmarker";

INSTANTIATE_TEST_SUITE_P(
    Programs, TmuxBusy,
    ::testing::Values(
        BusyCase{"BashAtPrompt", bash, {}, false}, BusyCase{"ZshAtPrompt", zsh, {}, false},
        BusyCase{"FishAtPrompt", fish, {}, false}, BusyCase{"DashAtPrompt", dash, {}, false},
        BusyCase{"BashAfterACommand", bash, {"echo mark''er"}, false, marker},
        BusyCase{"ZshAfterACommand", zsh, {"echo mark''er"}, false, marker},
        BusyCase{"BashRunsSleep", bash, {"sleep 1000"}, true},
        BusyCase{"ZshRunsSleep", zsh, {"sleep 1000"}, true},
        BusyCase{"FishRunsSleep", fish, {"sleep 1000"}, true},
        BusyCase{"DashRunsSleep", dash, {"sleep 1000"}, true},
        BusyCase{"BashRunsAPipe", bash, {"sleep 1000 | cat"}, true},
        BusyCase{"BashRunsASubshell", bash, {"(sleep 1000; true)"}, true},
        BusyCase{"BashRunsAFunction", bash, {"f() { sleep 1000; }; f"}, true},
        BusyCase{"BashLoops", bash, {"while true; do :; done"}, true},
        BusyCase{"ZshLoops", zsh, {"while true; do :; done"}, true},
        BusyCase{"FishLoops", fish, {"while true; end"}, true},
        BusyCase{"DashLoops", dash, {"while true; do :; done"}, true},
        BusyCase{"BashReads", bash, {"read answer"}, true}, BusyCase{"ZshReads", zsh, {"read answer"}, true},
        BusyCase{"ZshAsksBeforeItDeletesAll",
                 zsh,
                 {"cd && mkdir d && cd d && touch a b", "rm *"},
                 true,
                 "sure you want"},
        BusyCase{"ZshAsksYesOrNo", zsh, {"read -q answer"}, true},
        BusyCase{"BashReadsOneKey", bash, {"read -n 1 answer"}, true},
        BusyCase{"BashReadsASecret", bash, {"read -s answer"}, true},
        BusyCase{"DashReadsASecret", dash, {"stty -echo; read answer"}, true},
        BusyCase{"BashWithoutJobControlRunsSleep", bash, {"set +m; sleep 1000"}, true},
        BusyCase{"BashHasABackgroundJob", bash, {"sleep 1000 &", "echo mark''er"}, false, marker},
        BusyCase{"BashHasAStoppedJob", bash, {"sleep 1000 & kill -STOP $!", "echo mark''er"}, false, marker},
        BusyCase{"ZshInBash", bash, {"zsh"}, true}, BusyCase{"FishInBash", bash, {"fish"}, true},
        BusyCase{"BashInBash", bash, {"bash"}, true},
        BusyCase{"BashWaitsForTheRestOfALine", bash, {"echo '"}, false, "\n>"},
        BusyCase{"PythonInBash", bash, {"/usr/bin/python3 -q"}, true},
        BusyCase{"CatInBash", bash, {"cat"}, true}, BusyCase{"LessInBash", bash, {"less /etc/passwd"}, true},
        BusyCase{"ViInBash", bash, {"vi -n -u NONE"}, true},
        // ssh waits here for a connection that goes nowhere; sudo and su show a shell or ask for a password.
        BusyCase{"SshInBash", bash, {"ssh -F none -o ProxyCommand='sleep 1000' nowhere"}, true},
        BusyCase{"SudoInBash", bash, {"sudo -s"}, true}, BusyCase{"SuInBash", bash, {"su"}, true},
        // What a remote shell looks like from outside: a program in the foreground that hands the keys on.
        BusyCase{"ARemoteShellInBash", bash, {"script -qc bash /dev/null"}, true},
        BusyCase{"ASleepInPlaceOfAShell", {"exec sleep 1000"}, {}, true},
        BusyCase{"BashThatBecameAnotherProgram", bash, {"exec sleep 1000"}, true},
        BusyCase{"BashThatRunsACommandString", {"bash", "-c", "read x; echo $x"}, {}, true},
        BusyCase{"DashThatRunsACommandString", {"dash", "-c", "read x; echo $x"}, {}, true},
        BusyCase{"PythonInPlaceOfAShell", {"/usr/bin/python3", "-q"}, {}, true}),
    [](const ::testing::TestParamInfo<BusyCase>& entry) { return entry.param.name; });

}  // namespace
}  // namespace velmora
