#include <gmock/gmock.h>

#include <map>

#include "BridgeCore/OwnTerminal.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

class OwnTerminal : public ::testing::Test {
 protected:
  void add(pid_t process, pid_t parent, const char* name, const char* terminal = nullptr) {
    RunningProcess entry{.name = name, .parent = parent};
    if (terminal != nullptr) entry.terminal = terminal;
    table[process] = entry;
  }
  std::filesystem::path terminalOf(pid_t process) {
    return ownTerminalOf(process,
                         [this](pid_t asked) {
                           const auto found = table.find(asked);
                           return found == table.end() ? std::nullopt : std::optional(found->second);
                         },
                         {"/dev/pts/3", "/dev/pts/4"});
  }
  std::string refusal(pid_t process) {
    const auto error = testing::structuredError([&] { terminalOf(process); });
    EXPECT_EQ(error.code, ErrorCode::sessionNotAllowed);
    return error.message;
  }

  std::map<pid_t, RunningProcess> table;
};

TEST_F(OwnTerminal, IsOneThatTheBridgeDoesNotDrive) {
  add(10, 1, "sshd");
  add(11, 10, "bash", "/dev/pts/9");
  add(12, 11, "velmora", "/dev/pts/9");
  EXPECT_EQ(terminalOf(12), "/dev/pts/9");
}

TEST_F(OwnTerminal, IsNoneOfThoseThatTheBridgeDrives) {
  add(12, 1, "velmora", "/dev/pts/3");
  EXPECT_THAT(refusal(12), HasSubstr("agents can type into the one"));
}

TEST_F(OwnTerminal, IsNoneBelowAProcessOnOneThatTheBridgeDrives) {
  add(10, 1, "bash", "/dev/pts/4");
  add(11, 10, "script", "/dev/pts/4");
  add(12, 11, "velmora", "/dev/pts/20");
  EXPECT_THAT(refusal(12), HasSubstr("agents can type into the one"));
}

TEST_F(OwnTerminal, IsNoPaneOfAnyMultiplexer) {
  for (const auto* name : {"tmux", "screen"}) {
    add(10, 1, name);
    add(11, 10, "bash", "/dev/pts/20");
    add(12, 11, "velmora", "/dev/pts/20");
    EXPECT_THAT(refusal(12), HasSubstr(std::string("inside ") + name));
  }
}

TEST_F(OwnTerminal, IsNeeded) {
  add(10, 1, "bash", "/dev/pts/9");
  add(12, 10, "velmora");
  EXPECT_THAT(refusal(12), HasSubstr("runs without one"));
}

TEST_F(OwnTerminal, IsRefusedWhenNobodyCanTell) {
  EXPECT_THAT(refusal(12), HasSubstr("cannot be looked at"));
  add(12, 11, "velmora", "/dev/pts/9");
  EXPECT_THAT(refusal(12), HasSubstr("has just ended"));
  add(11, 12, "bash", "/dev/pts/9");
  EXPECT_THAT(refusal(12), HasSubstr("have no end"));
}

}  // namespace
}  // namespace velmora
