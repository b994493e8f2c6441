#include <fcntl.h>
#include <unistd.h>

#include <set>

#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::eventually;
using testing::modeOf;
using testing::structuredError;
using testing::writeFile;

class TmuxCreate : public testing::PrivateTmux {
 protected:
  std::string shellPrints(const TerminalTabSnapshot& tab, const std::string& expression) {
    const auto file = directory_ / "printed";
    std::filesystem::remove(file);
    executor()
        .send("printf %s \"" + expression + "\" > " + file.string() + ".new && mv " + file.string() +
                  ".new " + file.string(),
              tab.tty, tab.windowId)
        .get();
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(file); }));
    EXPECT_TRUE(eventually([&] { return !isBusy(tab.tty); })) << "back at its prompt";
    return contentOf(file);
  }
};

TEST_F(TmuxCreate, StartsAServerWithACleanEnvironmentAndAReadyPrompt) {
  environment_["SECRET_OF_THE_BRIDGE"] = "x";
  environment_["TMUX_PANE"] = "%7";
  const auto tab = executor().createWindow().get();
  EXPECT_FALSE(tab.busy) << "the prompt is not ready";
  EXPECT_TRUE(tab.selected);
  EXPECT_EQ(tab.windowIndex, 1);
  EXPECT_EQ(tab.tabIndex, 1);
  EXPECT_EQ(tab, onlyTab());
  EXPECT_EQ(tmux({"display-message", "-p", "#{pane_width}x#{pane_height}"}), "120x40");
  EXPECT_EQ(shellPrints(tab, "$PWD"), home().string());
  EXPECT_EQ(shellPrints(tab, "[$SECRET_OF_THE_BRIDGE]"), "[]");
  EXPECT_EQ(shellPrints(tab, "$TMUX_PANE"), "%0");
  EXPECT_EQ(modeOf(std::filesystem::path(transport_->socketPath()).parent_path()), 0700u);
}

TEST_F(TmuxCreate, GivesTheServerNoneOfTheBridgesDescriptors) {
  const int kept = ::open("/dev/null", O_RDONLY);  // inheritable, as a careless library would leave one
  const int twin = ::fcntl(kept, F_DUPFD, 500);
  executor().createWindow().get();
  EXPECT_FALSE(std::filesystem::exists("/proc/" + std::to_string(serverProcess().value()) + "/fd/" +
                                       std::to_string(twin)));
  ::close(twin);
  ::close(kept);
}

TEST_F(TmuxCreate, AddsASessionWithoutTouchingOthers) {
  startServer();
  const auto before = onlyTab();
  const auto created = executor().createWindow().get();
  EXPECT_NE(created.tty, before.tty);
  EXPECT_NE(created.windowId, before.windowId);
  EXPECT_EQ(tabs().size(), 2u);
  EXPECT_EQ(tmux({"display-message", "-p", "-t", "%0", "#{session_name} #{session_windows} #{pane_width}"}),
            "main 1 100");
}

TEST_F(TmuxCreate, WindowsSurviveTheAdapter) {
  const auto tab = executor().createWindow().get();
  executor_.reset();
  EXPECT_EQ(onlyTab(), tab);
}

TEST_F(TmuxCreate, ItsSessionsHaveNamesOfTheirOwnAndAreKnownAfterARestart) {
  startServer();
  tmux({"new-session", "-d", "-s", "velmora-2"});
  const auto first = executor().createWindow().get();
  const auto second = executor().createWindow().get();
  EXPECT_TRUE(first.title.starts_with("velmora-1: ")) << first.title;
  EXPECT_TRUE(second.title.starts_with("velmora-3: ")) << second.title;
  tmux({"split-window", "-d", "-t", "=velmora-1:"});
  executor_.reset();
  std::set<std::string> made;
  for (const TerminalTabSnapshot& tab : tabs()) {
    if (tab.madeByBridge) made.insert(tab.tty);
  }
  EXPECT_EQ(made, (std::set<std::string>{first.tty, second.tty})) << "and nothing that the user opened";
}

TEST_F(TmuxCreate, AServiceStartsAServerTooWhereNoSystemdOfTheUserAnswers) {
  TmuxOptions service = options();
  service.controlGroups = "0::/system.slice/velmora-headless.service\n";
  executor_ = makeTmuxTerminal(service);
  EXPECT_FALSE(executor().createWindow().get().busy);
}

TEST_F(TmuxCreate, WaitsForOtherShellsToo) {
  for (const char* const shell : {"/usr/bin/zsh", "/usr/bin/fish", "/usr/bin/dash"}) {
    environment_["SHELL"] = shell;
    const auto tab = executor().createWindow().get();
    EXPECT_TRUE(eventually([&] { return !isBusy(tab.tty); })) << shell;
    executor_.reset();
    endServer();
  }
}

TEST_F(TmuxCreate, SaysWhenDestroyUnattachedEndsTheSession) {
  startServer();
  tmux({"set-option", "-g", "exit-empty", "off"});
  // Before the option, or the fixture's own session would go too.
  tmux({"kill-session", "-t", "main"});
  tmux({"set-option", "-g", "destroy-unattached", "on"});
  const auto error = structuredError([&] { executor().createWindow().get(); });
  EXPECT_EQ(error.code, ErrorCode::terminalNotAvailable) << error.message;
  EXPECT_NE(error.message.find("destroy-unattached"), std::string::npos) << error.message;
  EXPECT_NE(error.recoverySuggestion.find("destroy-unattached off"), std::string::npos);
  EXPECT_FALSE(error.retryable);
}

TEST_F(TmuxCreate, SaysWhenDestroyUnattachedEndsTheServer) {
  writeFile(home() / ".tmux.conf", "set -g destroy-unattached on\n");
  const auto error = structuredError([&] { executor().createWindow().get(); });
  EXPECT_EQ(error.code, ErrorCode::terminalNotAvailable) << error.message;
  EXPECT_NE(error.message.find("destroy-unattached"), std::string::npos) << error.message;
}

TEST_F(TmuxCreate, SaysWhenTheShellEndsAtOnce) {
  writeFile(home() / ".tmux.conf", "set -g default-command 'exec true'\nset -g exit-empty off\n");
  const auto error = structuredError([&] { executor().createWindow().get(); });
  EXPECT_EQ(error.code, ErrorCode::terminalNotAvailable) << error.message;
  EXPECT_EQ(error.message, "The new tmux session ended at once.");
}

}  // namespace
}  // namespace velmora
