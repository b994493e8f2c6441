// The transport at real servers: what is seen of it, what it leaves behind, and what happens when things end.
#include <atomic>
#include <random>

#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "tests/TerminalAutomation/Tmux/Direct/RawTmux.h"
#include "tests/TerminalAutomation/Tmux/Direct/VersionedTmux.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::eventually;
using testing::namesIn;
using testing::RawTmux;
using Type = TmuxMessageType;
using namespace std::chrono_literals;

class DirectTmux : public testing::VersionedTmux {
 protected:
  /// Counts what the program is asked besides the first look.
  class CountingProgram final : public TmuxTransport {
   public:
    CountingProgram(std::unique_ptr<TmuxTransport> program, std::atomic<int>& count)
        : program_(std::move(program)), count_(count) {}
    TmuxAnswer run(const TmuxInvocation& invocation) override {
      ++count_;
      return program_->run(invocation);
    }
    std::string socketPath() const override { return program_->socketPath(); }
    void cancel() noexcept override { program_->cancel(); }

   private:
    const std::unique_ptr<TmuxTransport> program_;
    std::atomic<int>& count_;
  };

  TmuxSocketTransport& direct() {
    if (!direct_) {
      direct_ = std::make_unique<TmuxSocketTransport>(
          std::make_unique<CountingProgram>(programTransport(), programRuns_), environment_);
    }
    return *direct_;
  }

  static TmuxAnswer run(TmuxTransport& transport, std::vector<std::string> arguments,
                        std::optional<std::string> input = std::nullopt,
                        std::chrono::milliseconds time = 20s) {
    return transport.run({.arguments = std::move(arguments),
                          .standardInput = std::move(input),
                          .deadline = std::chrono::steady_clock::now() + time});
  }
  static TmuxAnswer run(TmuxTransport& transport, const PaneCommand& command,
                        std::chrono::milliseconds time = 20s) {
    return run(transport, command.arguments, command.standardInput, time);
  }

  PaneRow onlyPane() {
    const auto listing = parseListing(ask(paneListing()).output);
    EXPECT_TRUE(listing && listing->panes.size() == 1);
    return listing && !listing->panes.empty() ? listing->panes.front() : PaneRow{};
  }

  std::size_t serverDescriptors() const {
    return namesIn("/proc/" + std::to_string(*server_) + "/fd").size();
  }
  std::int64_t serverKilobytes() const {
    const std::string status = contentOf("/proc/" + std::to_string(*server_) + "/status");
    return std::stoll(status.substr(status.find("VmRSS:") + 6));
  }

  std::atomic<int> programRuns_ = 0;
  std::unique_ptr<TmuxSocketTransport> direct_;
};

TEST_P(DirectTmux, TheAdaptersCommandsAllGoDirectlyAndAnswerAsTheProgramDoes) {
  startServer(recorder());
  waitForRecorder();
  const PaneRow pane = onlyPane();
  const std::vector<std::vector<std::string>> reading{
      paneListing(),
      {"list-panes", "-a", "-F", paneRowFormat(), ";", "list-clients", "-F", clientRowFormat()},
      {"list-panes", "-a", "-f", "#{==:#{pane_tty}," + pane.tty + "}", "-F", paneRowFormat()},
      readText(pane, OutputSource::visible).arguments,
      readText(pane, OutputSource::history).arguments,
      readScreen(pane).arguments,
      {"show-options", "-gqv", "destroy-unattached"},
      {"select-window", "-t", "$0:@0", ";", "select-pane", "-t", "%0"},
      {"switch-client", "-c", "/dev/pts/none", "-t", "$0:@0.%0"},
  };
  std::string typed;
  for (const auto& arguments : reading) {
    const TmuxAnswer program = run(*transport_, arguments);
    const TmuxAnswer straight = run(direct(), arguments);
    EXPECT_EQ(straight.output, program.output);
    EXPECT_EQ(straight.errorOutput, program.errorOutput);
    EXPECT_EQ(straight.exitStatus, program.exitStatus);
  }
  int buffer = 0;
  for (TmuxTransport* const transport :
       {static_cast<TmuxTransport*>(transport_.get()), static_cast<TmuxTransport*>(&direct())}) {
    for (const std::string& text :
         {std::string("a 'b' \"c\" ; $d\n한글\t"), std::string(), std::string(65'536, 'x')}) {
      const TmuxAnswer answer = run(*transport, typeText(pane, text, "n" + std::to_string(++buffer)));
      EXPECT_EQ(answer.output + answer.errorOutput, "");
      typed += text + "\r";
    }
    run(*transport, pressKey(pane, TerminalKey::upArrow, 3, "n" + std::to_string(++buffer)));
    typed += "\033[A\033[A\033[A";
  }
  expectRecorded(typed);
  EXPECT_EQ(tmux({"list-buffers"}), "");
  EXPECT_EQ(programRuns_, 1) << "the first look";
  EXPECT_EQ(direct().whyProgram(), std::nullopt);
}

TEST_P(DirectTmux, NothingShowsAndNoHookRunsThatTheProgramWouldNotRun) {
  startServer();
  const std::filesystem::path hooks = directory_ / "hooks";
  for (const std::string& name :
       {std::string("after-list-panes"), std::string("after-display-message"), std::string("client-attached"),
        std::string("client-detached"), std::string("client-resized"), std::string("client-session-changed"),
        std::string("client-active"), std::string("client-focus-in"), std::string("client-focus-out"),
        std::string("session-created"), std::string("session-closed"), std::string("session-window-changed"),
        std::string("window-pane-changed"), std::string("pane-focus-in"), std::string("alert-activity")}) {
    ask({"set-hook", "-g", name, "run-shell 'echo " + name + " >> " + hooks.string() + "'"});
  }
  const std::vector<std::string> fields{"display-message", "-p", "-t", "main:",
                                        "#{session_attached} #{session_activity} #{session_last_attached}"};
  const auto hooksOf = [&](TmuxTransport& transport) {
    std::filesystem::remove(hooks);
    EXPECT_EQ(run(transport, {"list-panes", "-a", ";", "display-message", "-p", "x"}).exitStatus, 0);
    return contentOf(hooks);
  };
  run(direct(), {"list-panes"});
  const std::string before = tmux(fields);
  std::this_thread::sleep_for(1'100ms);
  const std::string byProgram = hooksOf(*transport_);
  EXPECT_NE(byProgram, "") << "they do run";
  EXPECT_EQ(hooksOf(direct()), byProgram);
  EXPECT_EQ(tmux(fields), before);

  RawTmux client(transport_->socketPath());
  client.say(RawTmux::opening({}));
  EXPECT_EQ(tmux({"list-clients"}), "") << "also while it is connected";
  EXPECT_EQ(run(direct(), {"list-clients"}).output, "");
}

TEST_P(DirectTmux, NothingIsLeftOfAClientThatEndsBetweenAnyTwoBytes) {
  startServer();
  const std::vector<std::string> gated{"load-buffer", "-b", "gate",  "-", ";",
                                       "set-buffer",  "-b", "after", "x"};
  const std::string opening = RawTmux::opening(gated);
  const std::size_t descriptors = serverDescriptors();
  for (std::size_t cut = 0; cut <= opening.size(); ++cut) {
    RawTmux client(transport_->socketPath());
    client.say(std::string_view(opening).substr(0, cut));
  }
  const auto input = [](std::int32_t stream) {
    TmuxMessageWriter writer(::getpid());
    writer.input(stream, "half of a text");
    return std::string(writer.unsent());
  };
  for (std::size_t cut = 0; cut < input(1).size(); ++cut) {
    RawTmux client(transport_->socketPath());
    client.say(opening);
    client.say(std::string_view(input(client.await(Type::readOpen))).substr(0, cut));
  }
  for (const Type last : {Type::writeOpen, Type::write}) {
    RawTmux client(transport_->socketPath());
    client.say(RawTmux::opening({"list-keys"}));
    const std::int32_t stream = client.await(Type::writeOpen);
    if (last == Type::writeOpen) continue;
    TmuxMessageWriter writer(::getpid());
    writer.writeReady(stream, 0);
    client.say(writer.unsent());
    client.await(Type::write);
  }
  EXPECT_EQ(serverProcess(), server_);
  EXPECT_EQ(tmux({"list-buffers"}), "");
  EXPECT_EQ(tmux({"list-clients"}), "");
  EXPECT_TRUE(eventually([&] { return serverDescriptors() <= descriptors; })) << serverDescriptors();
  EXPECT_EQ(run(direct(), {"display-message", "-p", "well"}).output, "well\n");
}

TEST_P(DirectTmux, AStoppedServerEndsTheCallAtItsDeadlineAndGetsNoInputLater) {
  startServer(recorder());
  waitForRecorder();
  const PaneRow pane = onlyPane();
  run(direct(), {"list-panes"});
  ::kill(*server_, SIGSTOP);
  int buffer = 0;
  for (const std::string& text : {std::string("lost"), std::string(65'536, 'x'), std::string()}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run(direct(), typeText(pane, text, "n" + std::to_string(++buffer)), 100ms).end,
              TmuxAnswer::End::timedOut);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
  }
  EXPECT_EQ(run(direct(), pressKey(pane, TerminalKey::tab, 1, "key"), 100ms).end, TmuxAnswer::End::timedOut);
  ::kill(*server_, SIGCONT);
  ASSERT_TRUE(eventually([&] { return serverProcess() == server_; }));
  tmux({"send-keys", "-t", "%0", "-l", "end"});
  expectRecorded("end");
  EXPECT_EQ(programRuns_, 1);
}

TEST_P(DirectTmux, AServerThatTakesTheOthersPlaceIsLookedAtAnew) {
  startServer();
  EXPECT_EQ(run(direct(), {"display-message", "-p", "#{pid}"}).output, std::to_string(*server_) + "\n");
  const pid_t former = *server_;
  run(*transport_, {"kill-server"});
  ASSERT_TRUE(eventually([&] { return !testing::isAlive(former); }));
  EXPECT_NE(run(direct(), {"list-panes"}).errorOutput, "") << "nobody is there";
  startServer();
  programRuns_ = 0;
  EXPECT_EQ(run(direct(), {"display-message", "-p", "#{pid}"}).output, std::to_string(*server_) + "\n");
  EXPECT_EQ(run(direct(), {"display-message", "-p", "x"}).output, "x\n");
  EXPECT_EQ(programRuns_, 1);
}

TEST_P(DirectTmux, AServerThatIsKilledInMidCallIsLostAsWithTheProgram) {
  startServer();
  run(direct(), {"list-panes"});
  ::kill(*server_, SIGSTOP);
  std::thread killer([this] {
    // The call is under way once its connection waits.
    std::this_thread::sleep_for(100ms);
    ::kill(*server_, SIGKILL);
  });
  const TmuxAnswer answer = run(direct(), {"list-panes"});
  killer.join();
  EXPECT_EQ(answer.end, TmuxAnswer::End::exited);
  EXPECT_EQ(answer.exitStatus, 1);
  EXPECT_EQ(answer.errorOutput, "server exited unexpectedly\n");
}

TEST_P(DirectTmux, AServerWithoutSessionsIsSpokenToDirectlyToo) {
  startServer();
  tmux({"set-option", "-g", "exit-empty", "off"});
  tmux({"kill-session", "-t", "main"});
  const TmuxAnswer program = run(*transport_, {"list-panes", "-a"});
  const TmuxAnswer straight = run(direct(), {"list-panes", "-a"});
  EXPECT_EQ(straight.exitStatus, program.exitStatus);
  EXPECT_EQ(straight.errorOutput, program.errorOutput);
  EXPECT_EQ(programRuns_, 1);
}

TEST_P(DirectTmux, CallsFromManyThreadsDoNotMixUp) {
  startServer();
  TmuxSocketTransport& transport = direct();
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([&, thread] {
      for (int count = 0; count < 100; ++count) {
        const std::string mark = std::to_string(thread) + " " + std::to_string(count);
        if (run(transport, {"display-message", "-p", mark}).output != mark + "\n") ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(transport.whyProgram(), std::nullopt);
}

/// Any bytes, and what means something to tmux.
std::string randomText(std::mt19937& chance, std::size_t size) {
  static const std::vector<std::string> parts{"a",  "b", "#", "{",  "}",  "[", "]",  ",",
                                              ";",  ":", "?", "!",  "=",  "<", "%",  "\\",
                                              "\"", "'", " ", "\t", "\n", "~", "한", "👩"};
  const bool meaningful = chance() % 2 == 0;
  std::string text;
  while (text.size() < size) {
    if (meaningful) {
      text += parts[chance() % parts.size()];
    } else {
      text += static_cast<char>(1 + chance() % 255);
    }
  }
  // No command of a shell.
  for (std::size_t at = text.find("#("); at != std::string::npos; at = text.find("#(")) text[at + 1] = '#';
  return text;
}

TEST_P(DirectTmux, RandomCallsAreAnsweredAsByTheProgramAndHarmNoServer) {
  startServer({"stty raw -echo; exec cat >/dev/null"});
  // Before that a control character among the keys would end the pane, and the server with it.
  ASSERT_TRUE(eventually([&] {
    return tmux({"display-message", "-p", "#{pane_current_command}"}) == "cat";
  }));
  std::mt19937 chance(7);
  const auto sizeOf = [&chance] {
    static const std::vector<std::size_t> sizes{0, 1, 3, 10, 100, 1'000, 5'000, 15'000};
    return sizes[chance() % sizes.size()];
  };
  int compared = 0;
  for (int call = 0; call < 600; ++call) {
    std::vector<std::string> arguments;
    std::optional<std::string> input;
    switch (chance() % 6) {
      case 0:
        arguments = {"display-message", "-p", "--", randomText(chance, sizeOf())};
        break;
      case 1:
        arguments = {"list-panes", "-a", "-F", randomText(chance, std::min<std::size_t>(sizeOf(), 3'000))};
        break;
      case 2:
        input =
            randomText(chance, std::vector<std::size_t>{0, 1, 16'363, 16'364, 16'365, 70'000}[chance() % 6]);
        arguments = {"load-buffer",   "-b", "q", "-", ";", "show-buffer", "-b", "q", ";",
                     "delete-buffer", "-b", "q"};
        break;
      case 3:
        arguments = {"send-keys", "-t", "%0",
                     "-l",        "--", randomText(chance, std::min<std::size_t>(sizeOf(), 2'000))};
        break;
      case 4:
        arguments = {"set-buffer", "-b", "z", "--", randomText(chance, sizeOf())};
        break;
      default:
        arguments = {"if-shell", "-F", randomText(chance, std::min<std::size_t>(sizeOf(), 2'000)),
                     "display-message -p yes", "display-message -p no"};
    }
    const TmuxDirectResult straight = askDirectly(arguments, input);
    ASSERT_EQ(straight.reach, TmuxDirectResult::Reach::spoken) << "call " << call;
    ASSERT_EQ(straight.exchange.surprise, std::nullopt) << "call " << call;
    if (call % 4 != 0) continue;
    ++compared;
    TmuxAnswer direct = straight.exchange.answer;
    TmuxAnswer program = run(*transport_, arguments, input);
    // A text may ask for the time of day, and a second may end between the two.
    for (int again = 0; again < 3 && direct.output != program.output; ++again) {
      direct = askDirectly(arguments, input).exchange.answer;
      program = run(*transport_, arguments, input);
    }
    EXPECT_EQ(direct.exitStatus, program.exitStatus) << "call " << call;
    EXPECT_TRUE(direct.output == program.output) << "call " << call;
    EXPECT_EQ(direct.errorOutput, program.errorOutput) << "call " << call;
  }
  EXPECT_EQ(compared, 150);
  EXPECT_EQ(serverProcess(), server_);
}

// VELMORA_TMUX_CALLS asks for another number of calls than the few that fit into every run of the tests.
TEST_P(DirectTmux, TheServerGrowsNoMoreThanUnderTheProgram) {
  const char* const asked = std::getenv("VELMORA_TMUX_CALLS");
  const int calls = asked == nullptr ? 100 : std::stoi(asked);
  startServer({"exec cat"});
  const PaneRow pane = onlyPane();
  const auto callAll = [&](TmuxTransport& transport, int count) {
    for (int call = 0; call < count; ++call) {
      run(transport,
          {"list-panes", "-a", "-F", paneRowFormat(), ";", "list-clients", "-F", clientRowFormat()});
      run(transport, readText(pane, OutputSource::visible));
    }
  };
  const auto growthBy = [&](TmuxTransport& transport) {
    callAll(transport, 100);  // what is set up once
    const std::int64_t before = serverKilobytes();
    const std::size_t descriptors = serverDescriptors();
    callAll(transport, calls);
    EXPECT_TRUE(eventually([&] { return serverDescriptors() <= descriptors; }));
    return serverKilobytes() - before;
  };
  const std::int64_t program = growthBy(*transport_);
  const std::int64_t straight = growthBy(direct());
  std::printf("%s: %d calls by the program: %+lld KiB, directly: %+lld KiB\n",
              tmux({"display-message", "-p", "#{version}"}).c_str(), 2 * calls,
              static_cast<long long>(program), static_cast<long long>(straight));
  EXPECT_LE(straight, std::max<std::int64_t>(program, 0) + 512);
  EXPECT_EQ(programRuns_, 1);
}

VELMORA_EACH_TMUX(DirectTmux);

}  // namespace
}  // namespace velmora
