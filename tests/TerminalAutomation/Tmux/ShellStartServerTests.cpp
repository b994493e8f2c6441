#include <sys/stat.h>

#include "TerminalAutomation/Tmux/ShellStart.h"
#include "tests/TerminalAutomation/Tmux/AttachedClient.h"
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::AttachedClient;
using testing::contentOf;
using testing::eventually;
using testing::writeFile;

TEST(ShellStart, TmuxReadsTheTextAsTheSameWords) {
  EXPECT_EQ(tmuxText({{"new-session", "-s", "it's"}, {"x;", "#{y}", ""}}),
            "'new-session' '-s' 'it'\"'\"'s' ; 'x;' '#{y}' ''");
  EXPECT_EQ(tmuxArguments({{"a", "b;"}, {"c"}}), (std::vector<std::string>{"a", "b\\;", ";", "c"}));
}

TEST(ShellStart, APathThatCannotStandInAVariableAsItIsStartsNothing) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(writeShellStart(directory / "with blank"));
  EXPECT_FALSE(writeShellStart(directory / "with$dollar"));
  EXPECT_FALSE(writeShellStart("relative"));
  EXPECT_FALSE(writeShellStart(""));
  EXPECT_TRUE(writeShellStart(directory / "plain"));
}

class ShellStartServer : public testing::PrivateTmux {
 protected:
  TerminalTabSnapshot open(const char* shell, const WindowWish& wish = {}, bool integrated = true) {
    environment_["SHELL"] = shell;
    executor().useSettings({.shellIntegration = integrated ? std::optional<ShellIntegrationChoice>()
                                                           : ShellIntegrationChoice::off});
    const auto tab = executor().createWindowAs(wish).get();
    EXPECT_TRUE(eventually([&] { return !isBusy(tab.tty); })) << shell;
    return tab;
  }

  /// What the shell says of itself, by a command whose output goes to the file that is named behind it.
  std::string says(const TerminalTabSnapshot& tab, const std::string& command) {
    const auto file = directory_ / ("said-" + std::to_string(++said_));
    sendTo(tab, command + " > " + file.string() + ".new; mv " + file.string() + ".new " + file.string());
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(file); })) << command;
    EXPECT_TRUE(eventually([&] { return !isBusy(tab.tty); })) << "back at its prompt";
    return contentOf(file);
  }

  std::filesystem::path record(const TerminalTabSnapshot& tab) const {
    return directory_ / "temporary/app.velmora.Velmora/shells" / ("pts-" + tab.tty.substr(9));
  }
  bool isRecorded(const TerminalTabSnapshot& tab) const { return std::filesystem::exists(record(tab)); }

  int said_ = 0;
};

TEST_F(ShellStartServer, ShellsOfNewWindowsNoteTheirCommandsAndNothingElseIsLeft) {
  for (const char* const shell : {"/bin/bash", "/usr/bin/zsh", "/usr/bin/fish"}) {
    const auto tab = open(shell);
    EXPECT_TRUE(eventually([&] { return isRecorded(tab); })) << shell;
    EXPECT_EQ(testing::modeOf(record(tab)), 0600u) << shell;
    const auto variables = tmux({"show-environment", "-g"}) + tmux({"show-environment", "-t", "=velmora-1"}) +
                           "\n" + says(tab, "env");
    for (const char* const name : {"VELMORA_", "POSIXLY_CORRECT", "ZDOTDIR", "\nENV="})
      EXPECT_EQ(variables.find(name), std::string::npos) << shell << ": " << name;
    executor_.reset();
    endServer();
  }
}

TEST_F(ShellStartServer, ABashIsTheSameLoginShellAsWithoutIt) {
  writeFile(home() / ".bash_profile", "PS1='$ '; PROMPT_COMMAND='kept=1'; . ~/.bashrc; profile=read\n");
  writeFile(home() / ".bashrc", "rc=read; set -o noclobber; shopt -s histappend; trap 'x=1' DEBUG\n");
  environment_["ENV"] = "/dev/null";
  std::map<bool, std::string> states;
  for (const bool integrated : {false, true}) {
    const auto tab = open("/bin/bash", {}, integrated);
    states[integrated] = says(
        tab, "{ shopt; set -o; trap -p; echo $0 $- $kept $rc $profile $HISTFILE $ENV; alias; ulimit -a; }");
    // By now a whole command has run, after which an integrated shell has noted it.
    EXPECT_EQ(isRecorded(tab), integrated);
    sendTo(tab, "exit");
    executor_.reset();
    endServer();
  }
  EXPECT_EQ(states[true], states[false]);
  EXPECT_NE(states[true].find("-bash"), std::string::npos);
}

TEST_F(ShellStartServer, AZshReadsTheUsersFilesFromTheirOwnPlace) {
  const auto own = home() / "own";
  std::filesystem::create_directories(own);
  writeFile(own / ".zshenv", "environment=read\n");
  writeFile(own / ".zshrc", "PS1='$ '; rc=read\n");
  std::map<bool, std::string> states;
  for (const bool integrated : {false, true}) {
    startServer({"cat"});
    tmux({"set-option", "-g", "default-shell", "/usr/bin/zsh"});
    tmux({"set-environment", "-g", "ZDOTDIR", own.string()});
    const auto tab = open("/usr/bin/zsh", {}, integrated);
    states[integrated] =
        says(tab, "{ setopt; trap; echo $0 $environment $rc $ZDOTDIR; alias; print -rl $fpath }");
    // By now a whole command has run, after which an integrated shell has noted it.
    EXPECT_EQ(isRecorded(tab), integrated);
    executor_.reset();
    endServer();
  }
  EXPECT_EQ(states[true], states[false]);
  EXPECT_NE(states[true].find("-zsh read read " + own.string()), std::string::npos) << states[true];
}

TEST_F(ShellStartServer, AnotherShellOrAnotherCommandOfTmuxStartsAsUsual) {
  for (const bool plainShell : {true, false}) {
    startServer({"cat"});
    tmux({"set-option", "-g", "default-shell", plainShell ? "/usr/bin/dash" : "/bin/bash"});
    if (!plainShell) tmux({"set-option", "-g", "default-command", "bash --norc"});
    EXPECT_EQ(says(open("/bin/bash"), "echo ${ENV-none} ${POSIXLY_CORRECT-none} ${__velmora_shell-none}"),
              "none none none\n");
    executor_.reset();
    endServer();
  }
}

TEST_F(ShellStartServer, WithoutAPlaceForItsFilesTheShellStartsAsUsual) {
  writeFile(directory_ / "temporary", "not a folder");
  EXPECT_EQ(says(open("/bin/bash"), "echo ${ENV-none} $BASHOPTS | grep -c login_shell"), "1\n");
}

TEST_F(ShellStartServer, NamesAndFoldersArriveAsTheyAre) {
  const auto folder = home() / "it's #{pid} \"here\";";
  std::filesystem::create_directories(folder);
  const auto tab = open("/bin/bash", {.name = "work's", .directory = folder.string(), .columns = 90});
  EXPECT_EQ(says(tab, "pwd"), folder.string() + "\n");
  EXPECT_TRUE(tab.title.starts_with("work's: ")) << tab.title;
  EXPECT_TRUE(tab.madeByBridge || onlyTab().madeByBridge);
  EXPECT_TRUE(eventually([&] { return isRecorded(tab); }));
  EXPECT_THROW(executor().createWindowAs({.name = "work's"}).get(), StructuredError);
  EXPECT_EQ(tabs().size(), 1u);
}

TEST_F(ShellStartServer, AWindowIsNeverShownUntilATerminalHasShownItOrSharesIt) {
  const auto tab = open("/bin/bash");
  EXPECT_TRUE(onlyTab().neverShown);
  {
    const AttachedClient client(transport_->socketPath(), "velmora-1");
    EXPECT_TRUE(eventually([&] { return !onlyTab().neverShown; }));
  }
  EXPECT_TRUE(eventually([&] { return tmux({"list-clients"}).empty(); }));
  EXPECT_FALSE(onlyTab().neverShown) << "nor later";

  executor().createWindow().get();
  tmux({"new-session", "-d", "-s", "beside", "-t", "velmora-2"});
  tmux({"kill-session", "-t", "beside"});
  for (const auto& each : tabs()) EXPECT_FALSE(each.neverShown) << each.title;
  EXPECT_FALSE(tab.tty.empty());
}

}  // namespace
}  // namespace velmora
