#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

#include "TerminalAutomation/Tmux/ContainedShell.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::structuredError;

std::size_t count(const std::vector<std::string>& words, const std::vector<std::string>& part) {
  std::size_t found = 0;
  for (auto from = words.begin();; ++from) {
    from = std::search(from, words.end(), part.begin(), part.end());
    if (from == words.end()) return found;
    ++found;
  }
}

TEST(ContainedShell, CoversTheFoldersThatAreThereAndTmuxsOwn) {
  const TemporaryDirectory directory;
  std::filesystem::create_directories(directory / "tmux-1");
  std::filesystem::create_directories(directory / "own");
  const auto words = containing("/usr/bin/bwrap", {.tmuxSocket = directory / "tmux-1/default",
                                                   .folders = {directory / "own", directory / "absent"}});
  EXPECT_EQ(words.front(), "/usr/bin/bwrap");
  EXPECT_EQ(words.back(), "--");
  EXPECT_EQ(count(words, {"--tmpfs", directory / "own"}), 1u);
  EXPECT_EQ(count(words, {"--tmpfs", directory / "tmux-1"}), 1u);
  EXPECT_EQ(count(words, {"--tmpfs"}), 2u) << "bubblewrap would make a folder that is not there";
  EXPECT_EQ(count(words, {"--unshare-pid"}), 1u);
  EXPECT_EQ(count(words, {"--cap-drop", "ALL"}), 1u);
  EXPECT_EQ(count(words, {"--dev", "/dev"}), 1u) << "other terminals have a device of the same user";
}

TEST(ContainedShell, CoversASocketAloneThatLiesAmongFilesOfTheUser) {
  const TemporaryDirectory directory;
  const auto socket = directory / "socket";
  const auto words = containing("/usr/bin/bwrap", {.tmuxSocket = socket, .folders = {}});
  EXPECT_EQ(count(words, {"--ro-bind", "/dev/null", socket}), 1u);
  EXPECT_EQ(count(words, {"--tmpfs"}), 0u);
}

TEST(ContainedShell, SaysWhyBubblewrapFails) {
  const TemporaryDirectory directory;
  const Environment environment{{"PATH", directory.path().string()}};
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  const auto bwrap = directory / "bwrap";
  const auto saying = [&](const std::string& script) {
    std::ofstream(bwrap) << "#!/bin/sh\n" << script;
    std::filesystem::permissions(bwrap, std::filesystem::perms::owner_all);
    return structuredError(
        [&] { containedShell(environment, {.tmuxSocket = directory / "s", .folders = {}}, deadline); });
  };
  const auto refused = saying("echo 'bwrap: No permissions to create new namespace' >&2; exit 1\n");
  EXPECT_EQ(refused.code, ErrorCode::terminalNotAvailable);
  EXPECT_EQ(refused.message,
            "New windows are to be contained, and this one could not be: bwrap: No permissions to create new "
            "namespace.");
  EXPECT_FALSE(refused.retryable);
  EXPECT_THAT(saying("exit 1\n").message, ::testing::EndsWith("could not be: bubblewrap did not start."));
  EXPECT_FALSE(std::filesystem::exists(directory / "s"));
}

}  // namespace
}  // namespace velmora
