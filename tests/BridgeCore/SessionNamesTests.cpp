#include <gtest/gtest.h>

#include "BridgeCore/SessionNames.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

TerminalSession session(const char* id, std::vector<std::string> targets) {
  TerminalSession session;
  session.sessionId = *Uuid::parse(id);
  session.targets = std::move(targets);
  return session;
}

const std::vector<TerminalSession> sessions{
    session("AB120000-0000-0000-0000-000000000001", {"%1", "work:1.0"}),
    session("AB12FFFF-0000-0000-0000-000000000002", {"%12", "work:1.1"}),
    session("CD340000-0000-0000-0000-000000000003", {}),
};

std::size_t meant(const std::string& name) {
  return static_cast<std::size_t>(&sessionNamed(name, sessions) - sessions.data());
}
ErrorCode refusal(const std::string& name) {
  return testing::structuredError([&] { sessionNamed(name, sessions); }).code;
}

TEST(SessionNames, AreTheTerminalsTargets) {
  EXPECT_EQ(meant("%1"), 0u);
  EXPECT_EQ(meant("%12"), 1u);
  EXPECT_EQ(meant("work:1.1"), 1u);
  EXPECT_EQ(refusal("%2"), ErrorCode::sessionNotFound);
  EXPECT_EQ(refusal("work:1"), ErrorCode::sessionNotFound);
}

TEST(SessionNames, AreIdsAndTheirBeginningsInEitherCase) {
  EXPECT_EQ(meant("AB120000-0000-0000-0000-000000000001"), 0u);
  EXPECT_EQ(meant("ab12ffff"), 1u);
  EXPECT_EQ(meant("cd34"), 2u);
}

TEST(SessionNames, AreRefusedWhenTheyMeanSeveralOrTooLittle) {
  EXPECT_EQ(refusal("ab12"), ErrorCode::invalidArgument);
  EXPECT_EQ(refusal("cd3"), ErrorCode::sessionNotFound);
  EXPECT_EQ(refusal(""), ErrorCode::sessionNotFound);
  EXPECT_EQ(refusal("CD340000-0000-0000-0000-0000000000031"), ErrorCode::sessionNotFound);
}

}  // namespace
}  // namespace velmora
