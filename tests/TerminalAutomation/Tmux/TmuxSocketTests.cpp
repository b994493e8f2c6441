#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "TerminalAutomation/Tmux/TmuxSocket.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

std::string defaultName() { return "tmux-" + std::to_string(::geteuid()) + "/default"; }

TEST(TmuxSocket, IsTheConfiguredOneFirst) {
  EXPECT_EQ(chooseTmuxSocket("/a/b", {{"TMUX", "/c/d,1,0"}, {"TMUX_TMPDIR", "/tmp"}}), "/a/b");
}

TEST(TmuxSocket, IsThatOfTheTmuxAround) {
  EXPECT_EQ(chooseTmuxSocket(std::nullopt, {{"TMUX", "/c/d,1,0"}}), "/c/d");
  EXPECT_EQ(chooseTmuxSocket(std::nullopt, {{"TMUX", "d,1,0"}}),
            std::filesystem::canonical("/tmp") / defaultName());
}

TEST(TmuxSocket, IsTmuxsDefaultOtherwise) {
  const TemporaryDirectory directory;
  const auto tmp = std::filesystem::canonical("/tmp");
  EXPECT_EQ(chooseTmuxSocket(std::nullopt, {}), tmp / defaultName());
  EXPECT_EQ(chooseTmuxSocket(std::nullopt, {{"TMUX_TMPDIR", ""}}), tmp / defaultName());
  EXPECT_EQ(chooseTmuxSocket(std::nullopt, {{"TMUX_TMPDIR", directory.path().string()}}),
            directory / defaultName());
  EXPECT_EQ(chooseTmuxSocket(std::nullopt, {{"TMUX_TMPDIR", directory / "missing"}}), tmp / defaultName());
}

class TmuxSocketDefect : public ::testing::Test {
 protected:
  TmuxSocketDefect() {
    std::filesystem::create_directory(folder_);
    ::chmod(folder_.c_str(), 0700);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path_.string().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
  }
  std::string defect() const { return tmuxSocketDefect(path_).value_or(""); }

  TemporaryDirectory directory_;
  std::filesystem::path folder_ = directory_ / "f";
  std::filesystem::path path_ = folder_ / "s";
};

TEST_F(TmuxSocketDefect, OwnSocketsAreGood) { EXPECT_EQ(defect(), ""); }

TEST_F(TmuxSocketDefect, WhatDoesNotExistIsNotWrong) {
  EXPECT_FALSE(tmuxSocketDefect(folder_ / "none").has_value());
  EXPECT_FALSE(tmuxSocketDefect(directory_ / "none" / "s").has_value());
}

TEST_F(TmuxSocketDefect, AFolderThatOthersMayWriteIsUnsafe) {
  for (const mode_t mode : {0777u, 0770u, 0702u}) {
    ::chmod(folder_.c_str(), mode);
    EXPECT_EQ(defect(), "Other users may write to the folder of the tmux socket: " + folder_.string());
  }
}

TEST_F(TmuxSocketDefect, AFolderThatIsALinkIsUnsafe) {
  std::filesystem::create_directory_symlink(folder_, directory_ / "link");
  EXPECT_TRUE(tmuxSocketDefect(directory_ / "link" / "s").has_value());
}

TEST_F(TmuxSocketDefect, OtherThingsInPlaceOfASocketAreUnsafe) {
  std::filesystem::remove(path_);
  testing::writeFile(path_, "");
  EXPECT_EQ(defect(), "The tmux socket is not a socket: " + path_.string());
}

TEST_F(TmuxSocketDefect, AnotherUsersThingsAreUnsafe) {
  // Giving files away takes privileges; the system's own folder stands in without them.
  if (::geteuid() != 0) {
    EXPECT_TRUE(tmuxSocketDefect("/usr/s").has_value());
    return;
  }
  ASSERT_EQ(::chown(path_.c_str(), 65534, 65534), 0);
  EXPECT_EQ(defect(), "The tmux socket belongs to another user: " + path_.string());
  ASSERT_EQ(::chown(folder_.c_str(), 65534, 65534), 0);
  EXPECT_EQ(defect(), "The folder of the tmux socket belongs to another user: " + folder_.string());
}

}  // namespace
}  // namespace velmora
