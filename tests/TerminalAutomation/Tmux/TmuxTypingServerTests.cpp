// The user and an agent at one prompt: no line is made of both.
#include <random>
#include <set>
#include <sstream>
#include <thread>

#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "tests/TerminalAutomation/Tmux/AttachedClient.h"
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::AttachedClient;
using testing::contentOf;
using testing::eventually;
using testing::structuredError;
using testing::writeFile;
using namespace std::chrono_literals;

class TmuxTyping : public testing::PrivateTmux {
 protected:
  void start(const std::vector<std::string>& shell) {
    writeFile(home() / ".config/fish/config.fish", "set -g fish_greeting\n");
    startServer(shell);
    TmuxOptions chosen = options();
    chosen.now = [this] { return Date::fromUnixSeconds(Date::now().unixSeconds() + ahead_.load()); };
    executor_ = makeTmuxTerminal(chosen);
    ASSERT_TRUE(eventually([&] { return cursor().front() != '0'; })) << "no prompt";
    column_ = column();
    tab_ = onlyTab();
    ASSERT_TRUE(eventually([&] { return !isBusy(tab_.tty); }));
  }
  std::string cursor() { return tmux({"display-message", "-p", "-t", "%0", "#{cursor_x} #{cursor_y}"}); }
  std::string column() {
    const std::string place = cursor();
    return place.substr(0, place.find(' '));
  }
  void waitForPrompt() {
    EXPECT_TRUE(eventually([&] { return column() == column_ && !isBusy(tab_.tty); }));
  }
  /// Types without a client, and waits until the shell shows it.
  void type(const std::vector<std::string>& keys) {
    const std::string before = cursor();
    std::vector<std::string> arguments{"send-keys", "-t", "%0"};
    arguments.insert(arguments.end(), keys.begin(), keys.end());
    tmux(arguments);
    const auto isShown = [&] {
      if (keys.front() != "-l") return cursor() != before && cursor().front() != '0';
      const std::string screen = tmux({"capture-pane", "-p", "-J", "-t", "%0"});
      const std::string shown = screen.substr(0, screen.find_last_not_of(" \n") + 1);
      const std::string text = keys.back().substr(0, keys.back().find_last_not_of(' ') + 1);
      return shown.ends_with(text.substr(text.size() - std::min<std::size_t>(text.size(), 20)));
    };
    EXPECT_TRUE(eventually(isShown)) << keys.back();
  }
  /// What an agent hears; empty when its text was typed.
  std::string send(const std::string& text) {
    tabs();
    try {
      executor().send(text, tab_.tty, tab_.windowId).get();
      return "";
    } catch (const StructuredError& error) {
      EXPECT_EQ(error.code, ErrorCode::sessionBusy);
      EXPECT_TRUE(error.retryable);
      return error.message.empty() ? "busy" : error.message;
    }
  }
  void later(double seconds) { ahead_ = ahead_.load() + seconds; }

  const std::string typing_ = "Someone is typing in this session.";
  std::atomic<double> ahead_ = 0;
  std::string column_;  // of the cursor behind the prompt
  TerminalTabSnapshot tab_;
};

class TmuxHalfTyped : public TmuxTyping, public ::testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override { start({GetParam()}); }
};
INSTANTIATE_TEST_SUITE_P(Shells, TmuxHalfTyped, ::testing::Values("bash", "zsh", "fish", "dash"));

TEST_P(TmuxHalfTyped, LineIsLeftAlone) {
  type({"-l", "echo half >> " + recording().string() + "; echo "});
  EXPECT_EQ(send("echo agent >> " + recording().string()), typing_);
  EXPECT_EQ(structuredError([&] {
              executor().send(TerminalKey::return_, 1, tab_.tty, tab_.windowId).get();
            }).message,
            typing_);
  EXPECT_FALSE(std::filesystem::exists(recording()));
  type({"C-u"});
  EXPECT_EQ(send("echo agent >> " + recording().string()), "");
  expectRecorded("agent\n");
}

TEST_P(TmuxHalfTyped, QuoteIsLeftOpen) {
  type({"-l", "echo 'half"});
  type({"Enter"});
  EXPECT_EQ(send("echo agent > " + recording().string() + "'"), typing_);
}

TEST_P(TmuxHalfTyped, LineOfLaterIsLeftAloneToo) {
  type({"-l", ": before"});
  type({"Enter"});
  waitForPrompt();
  const std::string before = cursor();
  EXPECT_TRUE(eventually([&] { return send(": first") == ""; }));
  later(30);
  // Until the shell has read that, the prompt which one sees is the last one.
  EXPECT_TRUE(eventually([&] { return cursor() != before; }));
  waitForPrompt();
  type({"-l", "true"});
  type({"Enter"});
  waitForPrompt();
  type({"-l", "echo half"});
  EXPECT_EQ(send("echo agent > " + recording().string()), typing_);
}

TEST_P(TmuxHalfTyped, LineThatWrapsIsLeftAlone) {
  type({"-l", "echo " + std::string(150, 'x') + " "});
  ASSERT_TRUE(eventually([&] { return visibleText(tab_).find(std::string(20, 'x')) != std::string::npos; }));
  EXPECT_EQ(send("echo agent > " + recording().string()), typing_);
}

TEST_F(TmuxTyping, AKeyOfTheUserHoldsThePaneForTenSeconds) {
  start({"bash"});
  AttachedClient client(transport_->socketPath(), "main");
  ASSERT_TRUE(eventually([&] { return tmux({"list-clients"}) != ""; }));
  const auto activity = [&] {
    client.drain();
    return tmux({"list-clients", "-F", "#{client_activity} #{client_created}"});
  };
  EXPECT_TRUE(eventually([&] { return send(": attached") == ""; })) << "an attach is no key";
  // In whole seconds, so the first may count for the attach.
  ASSERT_TRUE(eventually([&] {
    client.press("x\x7f");
    const std::string times = activity();
    return times.substr(0, times.find(' ')) != times.substr(times.find(' ') + 1);
  }));
  waitForPrompt();
  EXPECT_EQ(send(": agent"), typing_);
  later(12);
  EXPECT_TRUE(eventually([&] { return send(": agent") == ""; })) << "the line is empty, the user rests";
}

TEST_F(TmuxTyping, AKeyInAnotherPaneHoldsNothing) {
  start({"bash"});
  tmux({"split-window"});
  AttachedClient client(transport_->socketPath(), "main");
  ASSERT_TRUE(eventually([&] { return tmux({"list-clients"}) != ""; }));
  ASSERT_TRUE(eventually([&] {
    client.press("x");
    client.drain();
    return tmux({"list-clients", "-F", "#{?#{>:#{client_activity},#{client_created}},1,0}"}) == "1";
  }));
  EXPECT_TRUE(eventually([&] { return send(": agent") == ""; }));
}

TEST_F(TmuxTyping, TheServerItselfRefusesWhatWasTypedAfterTheLook) {
  start({"bash"});
  AttachedClient client(transport_->socketPath(), "main");
  ASSERT_TRUE(eventually([&] { return tmux({"list-clients"}) != ""; }));
  tabs();
  type({"-l", "x"});
  EXPECT_EQ(structuredError([&] { executor().send("ls", tab_.tty, tab_.windowId).get(); }).message, typing_)
      << "the cursor moved";
  type({"C-u"});
  const auto seconds = [&] {
    client.drain();
    return tmux({"display-message", "-p", "-t", "%0", "#{session_activity}"});
  };
  const std::string before = seconds();
  tabs();
  ASSERT_TRUE(eventually([&] {
    client.press("x\x7f");
    return seconds() != before;
  }));
  EXPECT_TRUE(eventually([&] { return cursor() == "2 0"; }));
  EXPECT_EQ(structuredError([&] { executor().send("ls", tab_.tty, tab_.windowId).get(); }).message, typing_)
      << "a key was pressed";
  EXPECT_EQ(tmux({"list-buffers"}), "");
}

TEST_F(TmuxTyping, APromptThatIsDrawnAfterTheLookIsNobodysTyping) {
  start({"bash"});
  tabs();
  {
    std::ofstream shell(tab_.tty);  // what the shell prints, as far as tmux can tell
    shell << "\r\033[Kann@desk:~$ " << std::flush;
  }
  ASSERT_TRUE(eventually([&] { return column() == "12"; }));
  EXPECT_NO_THROW(executor().send("echo agent > " + recording().string(), tab_.tty, tab_.windowId).get());
  expectRecorded("agent\n");
}

TEST_F(TmuxTyping, AProgramThatStartedAfterTheLookGetsNothing) {
  start({"bash"});
  tabs();
  auto listing = parseListing(ask(paneListing()).output);
  ASSERT_TRUE(listing && listing->panes.size() == 1);
  EXPECT_EQ(listing->panes[0].program, "bash");
  tmux({"send-keys", "-t", "%0", "cat > " + recording().string(), "Enter"});
  ASSERT_TRUE(eventually([&] {
    return tmux({"display-message", "-p", "-t", "%0", "#{pane_current_command}"}) == "cat";
  }));
  const auto answerTo = [&](const PaneCommand& command) {
    return transport_->run({.arguments = command.arguments,
                            .standardInput = command.standardInput,
                            .deadline = std::chrono::steady_clock::now() + 20s});
  };
  const PaneRow& row = listing->panes[0];
  const IdleGuard idle{.lastActivity = 9'000'000'000};
  for (const PaneCommand& command : {typeText(row, "agent", "b", PasteForm::block, idle),
                                     pressKey(row, TerminalKey::return_, 1, "b", idle)}) {
    const TmuxAnswer answer = answerTo(command);
    EXPECT_EQ(answer.output, "BUSY\n");
    EXPECT_EQ(answer.errorOutput, "");
  }
  EXPECT_EQ(tmux({"list-buffers"}), "");
  EXPECT_EQ(contentOf(recording()), "");
}

TEST_F(TmuxTyping, AProgramMayCallItselfAnything) {
  startServer({"bash", "-c", "exec -a $'a\\tb\\n#{pid},}' sleep 1000"});
  const auto all = tabs();
  ASSERT_EQ(all.size(), 1u);
  const auto listing = parseListing(ask(paneListing()).output);
  ASSERT_TRUE(listing.has_value());
  EXPECT_EQ(listing->panes[0].program.find_first_of("\t\n#{},"), std::string::npos)
      << listing->panes[0].program;
}

TEST_F(TmuxTyping, NoLineIsMadeOfBoth) {
  const auto history = directory_ / "history";
  writeFile(home() / ".bashrc",
            "PS1='$ '\nHISTFILE='" + history.string() + "'\nHISTCONTROL=\nPROMPT_COMMAND='history -a'\n");
  start({"bash"});
  std::set<std::string> typed;
  std::set<std::string> sent;
  std::mt19937 chance(7);  // NOLINT(cert-msc51-cpp): the same each time
  for (int round = 0; round < 4; ++round) {
    AttachedClient client(transport_->socketPath(), "main");
    ASSERT_TRUE(eventually([&] {
      client.drain();
      return tmux({"list-clients"}) != "";
    }));
    std::atomic<bool> ended = false;
    std::atomic<bool> letIn = false;
    std::thread agent([&] {
      for (int number = 0; !ended; ++number) {
        const std::string line = ": agent " + std::to_string(round) + " " + std::to_string(number);
        if (!send(line).empty()) continue;
        sent.insert(line);
        letIn = true;
      }
    });
    // Each second time the user types at once: tmux does not tell keys in the second of the attach from it.
    if (round % 2 == 0) {
      EXPECT_TRUE(eventually([&] { return letIn.load(); }));
    }
    const std::string line = ": user " + std::to_string(round);
    for (const char key : line) {
      const auto next = std::chrono::steady_clock::now() + std::chrono::milliseconds(chance() % 30);
      eventually([&] { return std::chrono::steady_clock::now() > next; });
      client.press(std::string(1, key));
      client.drain();
    }
    client.press("\r");
    typed.insert(line);
    EXPECT_TRUE(eventually([&] { return contentOf(history).find(line + "\n") != std::string::npos; }))
        << line;
    ended = true;
    agent.join();
  }
  later(30);
  ASSERT_TRUE(eventually([&] { return send(": last").empty(); }));
  ASSERT_TRUE(eventually([&] { return contentOf(history).find(": last") != std::string::npos; }));
  EXPECT_GT(sent.size(), 0u);
  std::istringstream lines(contentOf(history));
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(line == ": last" || typed.contains(line) || sent.contains(line)) << line;
  }
}

}  // namespace
}  // namespace velmora
