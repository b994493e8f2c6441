// The direct way beside the program, at real servers.
#include <regex>

#include "tests/TerminalAutomation/Tmux/Direct/ComparedCommands.h"
#include "tests/TerminalAutomation/Tmux/Direct/VersionedTmux.h"

namespace velmora {
namespace {

using testing::ComparedCommand;
using testing::eventually;
using namespace std::chrono_literals;

/// Two servers that are given the same commands in the same order.
class TmuxTwins : public testing::VersionedTmux {
 protected:
  void SetUp() override {
    std::filesystem::current_path(home());
    startServer({quietPane});
    twinSocket_ = std::filesystem::path(transport_->socketPath()).parent_path() / "twin";
    twin_ = std::make_unique<TmuxProcessTransport>(environment_, twinSocket_, program());
    EXPECT_EQ(
        by(*twin_, {"-f", "/dev/null", "new-session", "-d", "-s", "main", "-x", "100", "-y", "30", quietPane})
            .errorOutput,
        "");
    twinServer_ = static_cast<pid_t>(std::stol(by(*twin_, {"display-message", "-p", "#{pid}"}).output));
    for (TmuxProcessTransport* const server : {transport_.get(), twin_.get()}) {
      by(*server,
         {"set-option", "-g", "exit-empty", "off", ";", "set-option", "-g", "automatic-rename", "off"});
      // tmux may have named the window after the shell that came before cat, in one of the two.
      by(*server, {"rename-window", "-t", "main:0", "cat"});
    }
    atTwin_ = std::make_unique<TmuxDirectClient>(twinSocket_, environment_["TERM"], environment_["HOME"]);
  }

  void TearDown() override {
    by(*twin_, {"kill-server"});
    if (!eventually([&] { return !testing::isAlive(twinServer_); }, 5s)) ::kill(twinServer_, SIGKILL);
    PrivateTmux::TearDown();
    std::filesystem::current_path("/");
  }

  static TmuxAnswer by(TmuxTransport& transport, std::vector<std::string> arguments,
                       std::optional<std::string> input = std::nullopt) {
    return transport.run({.arguments = std::move(arguments),
                          .standardInput = std::move(input),
                          .deadline = std::chrono::steady_clock::now() + 20s});
  }

  TmuxAnswer direct(TmuxDirectClient& client, pid_t server, const ComparedCommand& command) {
    const TmuxDirectResult result = client.ask({.arguments = command.arguments,
                                                .standardInput = command.input,
                                                .deadline = std::chrono::steady_clock::now() + 20s},
                                               server);
    EXPECT_EQ(result.reach, TmuxDirectResult::Reach::spoken);
    EXPECT_EQ(result.exchange.surprise, std::nullopt) << command.arguments.front();
    return result.exchange.answer;
  }

  void compare(const ComparedCommand& command, const TmuxAnswer& program, const TmuxAnswer& straight) {
    ++compared_;
    refused_ += program.exitStatus != 0 ? 1 : 0;
    std::string words;
    for (const std::string& argument : command.arguments) words += argument.substr(0, 60) + " ";
    words.resize(std::min<std::size_t>(words.size(), 300));
    EXPECT_EQ(straight.end, program.end) << words;
    EXPECT_EQ(straight.exitStatus, program.exitStatus) << words;
    EXPECT_EQ(unified(straight.errorOutput), unified(program.errorOutput)) << words;
    if (program.output.size() < 10'000) {
      EXPECT_EQ(unified(straight.output), unified(program.output)) << words;
    } else if (program.output.size() < 100'000) {
      EXPECT_TRUE(unified(straight.output) == unified(program.output))
          << words << ": " << straight.output.size() << " and " << program.output.size() << " bytes";
    } else {
      EXPECT_TRUE(straight.output == program.output)
          << words << ": " << straight.output.size() << " and " << program.output.size() << " bytes";
    }
  }

  /// Without what differs between two servers, and between two clients of one.
  std::string unified(std::string text) const {
    for (const std::string& socket : {transport_->socketPath(), twinSocket_.string()}) {
      for (std::size_t at = text.find(socket); at != std::string::npos; at = text.find(socket)) {
        text.replace(at, socket.size(), "SOCKET");
      }
    }
    text = std::regex_replace(text, std::regex("client-[0-9]+"), "client-N");
    text = std::regex_replace(text, std::regex(", [0-9]+ bytes\\]"),
                              ", N bytes]");  // what a shell has drawn so far
    return std::regex_replace(text, std::regex("\\(created [^)]*\\)"), "(created)");
  }

  /// Without the echo, which comes before or after the output as it happens.
  static constexpr const char* quietPane = "stty -echo; exec cat";

  std::filesystem::path twinSocket_;
  std::unique_ptr<TmuxProcessTransport> twin_;
  pid_t twinServer_ = -1;
  std::unique_ptr<TmuxDirectClient> atTwin_;
  int compared_ = 0;
  int refused_ = 0;
};

TEST_P(TmuxTwins, TheDirectWayAnswersEveryCommandAsTheProgramDoes) {
  const auto commands = testing::ComparedCommands::all();
  for (const ComparedCommand& command : commands) {
    using Kind = ComparedCommand::Kind;
    if (command.kind == Kind::awaited) {
      for (TmuxProcessTransport* const server : {transport_.get(), twin_.get()}) {
        ASSERT_TRUE(eventually([&] {
          return by(*server, command.arguments).output.find(*command.input) != std::string::npos;
        })) << *command.input;
      }
      continue;
    }
    if (command.kind != Kind::differs) {
      compare(command, by(*transport_, command.arguments, command.input),
              direct(*atTwin_, twinServer_, command));
    }
    if (command.kind == Kind::reads || command.kind == Kind::differs) {
      compare(command, by(*transport_, command.arguments, command.input),
              direct(directClient(), server_.value(), command));
    }
  }
  RecordProperty("compared", compared_);
  std::printf("%s: %d comparisons of %zu commands, %d of them refused\n",
              by(*transport_, {"-V"}).output.c_str(), compared_, commands.size(), refused_);
}

VELMORA_EACH_TMUX(TmuxTwins);

}  // namespace
}  // namespace velmora
