#include <gtest/gtest.h>
#include <sys/stat.h>

#include "System/FindProgram.h"
#include "TerminalAutomation/Tmux/TmuxProcessTransport.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::writeFile;

class TmuxProcessTransportTest : public ::testing::Test {
 protected:
  /// A program that prints its arguments and its environment.
  std::filesystem::path program(const std::string& folder) {
    const auto path = directory_ / folder / "tmux";
    writeFile(path, "#!/bin/sh\necho \"$@\"\n/usr/bin/env\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  }
  /// How the tmux program is started for `command`, when systemd-run prints its arguments or, after `refusal`
  /// on standard error, fails.
  std::string startOf(const std::string& command, bool inService, const std::string& refusal = "") {
    program("bin");
    const auto starter = directory_ / "bin" / "systemd-run";
    writeFile(starter, refusal.empty() ? "#!/bin/sh\necho systemd-run \"$@\"\n"
                                       : "#!/bin/sh\necho '" + refusal + "' >&2\nexit 1\n");
    std::filesystem::permissions(starter, std::filesystem::perms::owner_all);
    TmuxProcessTransport transport({{"PATH", (directory_ / "bin").string()}}, directory_ / "s", std::nullopt,
                                   inService);
    const TmuxAnswer answer =
        transport.run({.arguments = {command, "-d"},
                       .deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20)});
    EXPECT_EQ(answer.end, TmuxAnswer::End::exited);
    return answer.output.substr(0, answer.output.find('\n')) + answer.errorOutput;
  }
  TmuxAnswer run(const Environment& environment) {
    TmuxProcessTransport transport(environment, directory_ / "s", std::nullopt);
    return transport.run({.arguments = {"list-panes"},
                          .deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20)});
  }

  TemporaryDirectory directory_;
};

TEST_F(TmuxProcessTransportTest, NamesTheSocketAndAsksForUtf8) {
  program("bin");
  const TmuxAnswer answer = run({{"PATH", (directory_ / "bin").string()}});
  EXPECT_TRUE(answer.output.starts_with("-u -S " + (directory_ / "s").string() + " list-panes\n"))
      << answer.output;
}

TEST_F(TmuxProcessTransportTest, HandsOverACleanedEnvironment) {
  program("bin");
  const TmuxAnswer answer = run({{"PATH", (directory_ / "bin").string()},
                                 {"HOME", "/h"},
                                 {"LC_TIME", "C"},
                                 {"XDG_RUNTIME_DIR", "/r"},
                                 {"TMUX", "/a,1,2"},
                                 {"TMUX_PANE", "%1"},
                                 {"TMUX_TMPDIR", "/t"},
                                 {"API_KEY", "secret"}});
  for (const char* kept : {"HOME=/h", "LC_TIME=C", "XDG_RUNTIME_DIR=/r"}) {
    EXPECT_NE(answer.output.find(kept), std::string::npos) << kept;
  }
  for (const char* dropped : {"TMUX", "secret"})
    EXPECT_EQ(answer.output.find(dropped), std::string::npos) << dropped;
}

TEST_F(TmuxProcessTransportTest, AServersServiceIsNotTheBridges) {
  const std::string socket = (directory_ / "s").string();
  const std::string plain = "-u -S " + socket + " new-session -d";
  EXPECT_EQ(startOf("new-session", true), "systemd-run --user --scope --quiet --collect -- " +
                                              (directory_ / "bin" / "tmux").string() + " " + plain);
  EXPECT_EQ(startOf("list-panes", true), "-u -S " + socket + " list-panes -d") << "it starts no server";
  EXPECT_EQ(startOf("new-session", false), plain);
  EXPECT_TRUE(startOf("start-server", true).starts_with("systemd-run --user --scope "));
}

TEST_F(TmuxProcessTransportTest, WithoutASystemdOfTheUserAServerIsStartedPlainly) {
  const std::string plain = "-u -S " + (directory_ / "s").string() + " new-session -d";
  for (const char* const refusal :
       {"Failed to connect to bus: No medium found", "Failed to start transient scope unit: Interactive",
        "System has not been booted with systemd as init system (PID 1). Can not operate."}) {
    EXPECT_EQ(startOf("new-session", true, refusal), plain) << refusal;
  }
  EXPECT_EQ(startOf("new-session", true, "duplicate session: x"), "duplicate session: x\n")
      << "tmux itself said that: it is not asked twice";
}

TEST_F(TmuxProcessTransportTest, FindsTheFirstProgramInThePathThatMayRun) {
  const auto good = program("second");
  writeFile(directory_ / "first" / "tmux", "not executable");
  std::filesystem::create_directories(directory_ / "zeroth" / "tmux");
  const std::string path = (directory_ / "zeroth").string() +
                           "::relative:" + (directory_ / "first").string() + ":" +
                           (directory_ / "second").string();
  EXPECT_EQ(findProgram("tmux", {{"PATH", path}}), good);
  EXPECT_EQ(findProgram("sh", {}), "/usr/bin/sh") << "the usual folders follow";
  EXPECT_FALSE(findProgram("no-program-has-this-name", {{"PATH", path}}).has_value());
}

TEST_F(TmuxProcessTransportTest, RunsNothingOnAnUnsafeSocket) {
  program("bin");
  ::chmod(directory_.path().c_str(), 0777);
  const TmuxAnswer answer = run({{"PATH", (directory_ / "bin").string()}});
  EXPECT_EQ(answer.end, TmuxAnswer::End::unsafeSocket);
  EXPECT_EQ(answer.output, "");
}

}  // namespace
}  // namespace velmora
