// Who is asked, and when: a made-up server, and a made-up program beside it.
#include <gtest/gtest.h>

#include <deque>
#include <future>
#include <memory>
#include <vector>

#include "TerminalAutomation/Tmux/Direct/TmuxSocketTransport.h"
#include "tests/TerminalAutomation/Tmux/Direct/FakeTmux.h"

namespace velmora {
namespace {

using testing::answerOf;
using testing::FakeTmux;
using testing::FakeTmuxClient;
using End = TmuxAnswer::End;
using Type = TmuxMessageType;
using namespace std::chrono_literals;

/// Answers the look at the server and everything else as it is told, and keeps what it was asked.
class ScriptedProgram final : public TmuxTransport {
 public:
  struct State {
    std::filesystem::path socket;
    std::deque<TmuxAnswer> looks;  ///< The last one again and again.
    std::vector<std::string> asked;
    int looked = 0;
    bool cancelled = false;
  };

  explicit ScriptedProgram(State& state) : state_(state) {}

  TmuxAnswer run(const TmuxInvocation& invocation) override {
    if (invocation.arguments.front() != "display-message") {
      state_.asked.push_back(invocation.arguments.front());
      return {.output = "by the program"};
    }
    ++state_.looked;
    TmuxAnswer answer = state_.looks.front();
    if (state_.looks.size() > 1) state_.looks.pop_front();
    return answer;
  }
  std::string socketPath() const override { return state_.socket; }
  void cancel() noexcept override { state_.cancelled = true; }

 private:
  State& state_;
};

/// Serves the look with `look_` and other commands with `serve_`.
class TmuxSocketTransportTest : public ::testing::Test {
 protected:
  TmuxSocketTransportTest() {
    program_.socket = server_.socket();
    program_.looks = {{.output = look_}};
  }

  static std::string lookOf(const std::string& version, pid_t process = ::getpid()) {
    return version + "\t" + std::to_string(process) +
           "\t1700000000\n$0\t@0\t%0\t77\t/dev/pts/1\t1\t1700000000\n";
  }

  void serve(FakeTmuxClient& client) {
    if (!client.await(Type::command)) return;
    const bool isLook = client.body.find("display-message") != std::string::npos;
    if (!isLook) ++served_;
    if (isLook) {
      client.say(answerOf(look_));
    } else {
      serve_(client);
    }
    client.awaitEnd();
  }

  TmuxAnswer run(std::vector<std::string> arguments = {"list-panes"}, std::chrono::milliseconds time = 20s) {
    return transport().run(
        {.arguments = std::move(arguments), .deadline = std::chrono::steady_clock::now() + time});
  }

  TmuxSocketTransport& transport() {
    if (!transport_) {
      transport_ = std::make_unique<TmuxSocketTransport>(
          std::make_unique<ScriptedProgram>(program_), Environment{{"TERM", "xterm"}},
          Log([this](LogLevel, std::string_view area, std::string_view words) {
            log_.push_back(std::string(area) + ": " + std::string(words));
          }));
    }
    return *transport_;
  }

  void expectProgramOnly(const std::string& reason) {
    EXPECT_EQ(run().output, "by the program");
    EXPECT_EQ(run().output, "by the program");
    EXPECT_EQ(served_, 0);
    EXPECT_EQ(transport().whyProgram(), reason);
    ASSERT_EQ(log_.size(), 1u) << "one line, however many calls";
    EXPECT_EQ(log_.front(), "tmux: The tmux program is started for each call: " + reason + ".");
  }

  std::string look_ = lookOf("3.3a");
  std::function<void(FakeTmuxClient&)> serve_ = [](FakeTmuxClient& client) {
    client.say(answerOf("directly"));
  };
  std::atomic<int> served_ = 0;
  std::vector<std::string> log_;
  ScriptedProgram::State program_;
  FakeTmux server_{[this](FakeTmuxClient& client) { serve(client); }};
  std::unique_ptr<TmuxSocketTransport> transport_;
};

TEST_F(TmuxSocketTransportTest, SaysWhichWayTheServerIsAsked) {
  EXPECT_EQ(transport().way(), "");
  run();
  EXPECT_EQ(transport().way(), "over its own socket");
  serve_ = [](FakeTmuxClient& client) { ::shutdown(client.descriptor(), SHUT_RDWR); };
  run();
  EXPECT_EQ(transport().way(), "by the tmux program: the server hung up in the middle");
}

TEST_F(TmuxSocketTransportTest, AsksByTheProgramForWhomTheUserWantsItSo) {
  run();
  transport().useProgramOnly(true);
  EXPECT_EQ(run().output, "by the program");
  EXPECT_EQ(transport().way(), "by the tmux program, as the setting tmuxTransport says");
  transport().useProgramOnly(false);
  EXPECT_EQ(run().output, "directly");
  EXPECT_EQ(served_, 2);
}

TEST_F(TmuxSocketTransportTest, SpeaksDirectlyAfterBothWaysAgreedOnce) {
  for (int count = 0; count < 3; ++count) EXPECT_EQ(run().output, "directly");
  EXPECT_EQ(program_.looked, 1);
  EXPECT_TRUE(program_.asked.empty());
  EXPECT_EQ(served_, 3);
  EXPECT_EQ(transport().whyProgram(), std::nullopt);
  EXPECT_TRUE(log_.empty());
}

TEST_F(TmuxSocketTransportTest, LeavesAVersionThatIsNotTestedToTheProgram) {
  for (const char* version : {"3.9", "3.3", "3.2a", "next-3.9", "master", "3.3aa", ""}) {
    EXPECT_FALSE(isTestedTmuxVersion(version)) << version;
  }
  program_.looks = {{.output = lookOf("3.9")}};
  expectProgramOnly("tmux 3.9 is not a tested version");
  EXPECT_EQ(program_.looked, 1) << "it is known from then on";
  EXPECT_EQ(server_.connections, 0) << "not even a connection";
}

TEST_F(TmuxSocketTransportTest, LeavesAServerThatAnswersDifferentlyToTheProgram) {
  program_.looks = {{.output = lookOf("3.3a") + "another pane\n"}};
  expectProgramOnly("the server answers differently from what the program says");
}

TEST_F(TmuxSocketTransportTest, LooksAgainWhenAPaneCameOrWentBetweenTheLooks) {
  program_.looks = {{.output = lookOf("3.3a") + "a pane that ended\n"}, {.output = look_}};
  EXPECT_EQ(run().output, "directly");
  EXPECT_EQ(program_.looked, 2);
}

TEST_F(TmuxSocketTransportTest, DecidesNothingWhileThePanesKeepChanging) {
  for (int count = 0; count < 4; ++count)
    program_.looks.push_front({.output = lookOf("3.3a") + std::to_string(count) + "\n"});
  EXPECT_EQ(run().output, "by the program");
  EXPECT_EQ(transport().whyProgram(), std::nullopt);
  EXPECT_EQ(run().output, "directly") << "the next call looks again";
}

TEST_F(TmuxSocketTransportTest, LeavesASocketThatIsNotTheServersOwnToTheProgram) {
  program_.looks = {{.output = lookOf("3.3a", 1)}};
  expectProgramOnly("the socket is not the server's own");
}

TEST_F(TmuxSocketTransportTest, DecidesNothingWithoutAnAnswerOfTheProgram) {
  for (const TmuxAnswer& look :
       {TmuxAnswer{.exitStatus = 1, .errorOutput = "no server running"}, TmuxAnswer{.end = End::notInstalled},
        TmuxAnswer{.output = "garbage"}, TmuxAnswer{.output = "3.3a\tx\t1\n"},
        TmuxAnswer{.output = "3.3a\t-5\t1\n"}}) {
    program_.looks = {look};
    EXPECT_EQ(run().output, "by the program");
    EXPECT_EQ(transport().whyProgram(), std::nullopt);
  }
  program_.looks = {{.output = look_}};
  EXPECT_EQ(run().output, "directly");
}

TEST_F(TmuxSocketTransportTest, GivesACommandToNobodyWhenTheLookTookAllTheTime) {
  program_.looks = {{.end = End::timedOut}};
  EXPECT_EQ(run({"list-panes"}, 0ms).end, End::timedOut);
  EXPECT_TRUE(program_.asked.empty());
}

TEST_F(TmuxSocketTransportTest, NeverGivesACommandTwiceThatTheServerMayHaveGot) {
  run();
  serve_ = [](FakeTmuxClient& client) { ::shutdown(client.descriptor(), SHUT_RDWR); };
  const TmuxAnswer answer = run({"send-keys", "x"});
  EXPECT_EQ(answer.end, End::exited);
  EXPECT_EQ(answer.exitStatus, 1);
  EXPECT_EQ(answer.errorOutput, "server exited unexpectedly\n") << "as the program says it";
  EXPECT_TRUE(program_.asked.empty());
  EXPECT_EQ(run().output, "by the program") << "from the next call on";
  EXPECT_EQ(transport().whyProgram(), "the server hung up in the middle");
  EXPECT_EQ(log_.size(), 1u);
}

TEST_F(TmuxSocketTransportTest, LeavesAServerThatSaysSomethingUnexpectedToTheProgram) {
  run();
  serve_ = [](FakeTmuxClient& client) { client.say(testing::message(static_cast<Type>(999), "")); };
  EXPECT_EQ(run().errorOutput, "server exited unexpectedly\n");
  EXPECT_EQ(run().output, "by the program");
  EXPECT_EQ(transport().whyProgram(), "the server sent a message that is not known (message 999)");
}

TEST_F(TmuxSocketTransportTest, LeavesAServerThatIsUnexpectedAtTheFirstLookToTheProgram) {
  look_ = std::string(20'000, 'x');  // no message is as long
  expectProgramOnly("the server sent a message of a wrong length (message 304)");
}

TEST_F(TmuxSocketTransportTest, JudgesAServerAnewThatTookTheOthersPlace) {
  run();
  const std::filesystem::path path = server_.socket();
  std::filesystem::rename(path, server_.folder() / "gone");
  EXPECT_EQ(run().output, "by the program") << "nobody is there now";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.native().copy(address.sun_path, sizeof address.sun_path - 1);
  const FileDescriptor another = SocketPlatform::openStreamSocket();
  ASSERT_EQ(::bind(another.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(another.get(), 1), 0);
  program_.looks = {{.output = lookOf("3.9")}};
  EXPECT_EQ(run().output, "by the program");
  EXPECT_EQ(transport().whyProgram(), "tmux 3.9 is not a tested version");
}

TEST_F(TmuxSocketTransportTest, LeavesToTheProgramWhatNeedsIt) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"new-session", "-d"}, {"-V"}, {"list-panes", "-F", std::string(17'000, 'x')}}) {
    EXPECT_EQ(run(arguments).output, "by the program") << arguments.front();
  }
  EXPECT_EQ(program_.looked, 0);
}

TEST_F(TmuxSocketTransportTest, LeavesAnUnsafeSocketToTheProgramsTransport) {
  std::filesystem::permissions(server_.folder().path(), std::filesystem::perms::all);
  EXPECT_EQ(run().output, "by the program");
  EXPECT_EQ(server_.connections, 0);
}

TEST_F(TmuxSocketTransportTest, CancelsBothWays) {
  run();
  const auto asked = std::make_shared<std::promise<void>>();  // the server's thread outlives the test
  serve_ = [asked](FakeTmuxClient&) { asked->set_value(); };
  auto call = std::async(std::launch::async, [this] { return run(); });
  asked->get_future().wait();
  transport().cancel();
  EXPECT_EQ(call.get().end, End::cancelled);
  EXPECT_TRUE(program_.cancelled);
}

}  // namespace
}  // namespace velmora
