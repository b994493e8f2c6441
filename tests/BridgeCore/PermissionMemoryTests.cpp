#include <gmock/gmock.h>

#include "BridgeCore/PermissionMemory.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Files.h"
#include "tests/support/LogLines.h"

namespace velmora {
namespace {

using enum SessionPermission;

/// The core's part in one run of the bridge.
struct Bridge {
  Bridge(TerminalAutomating& terminal, PermissionStore& store, SessionPolicy policy, const Log& log = {})
      : memory(registry, &store, log), sessions(terminal, registry, policy, Date::now, &memory) {}

  /// The one session's permission after as many listings as a moved tab takes to get its new id.
  TerminalSession only() {
    sessions.list({});
    const auto listed = sessions.list({});
    return listed.size() == 1 ? listed[0] : throw std::runtime_error("not one session");
  }
  void set(SessionPermission permission) { permissions.set(permission, only().sessionId); }

  SessionRegistry registry{Uuid::random(), Uuid::random};
  PermissionMemory memory;
  TerminalSessionService sessions;
  SessionPermissionService permissions{registry, &memory};
};

class PermissionMemoryTest : public testing::CoreFixture {
 protected:
  PermissionMemoryTest() { showTab(1, "%0"); }

  void showTab(std::int64_t window, const std::string& pane, const std::string& server = "tmux 1 2") {
    terminal.tabs = {testing::tab("/dev/pts/1", window)};
    terminal.tabs[0].identity = TabIdentity{server, pane};
  }
  std::unique_ptr<Bridge> run(SessionPolicy policy = SessionPolicy::safe) {
    auto made = std::make_unique<Bridge>(terminal, store, policy, log.log());
    made->memory.load();
    return made;
  }

  testing::LogLines log;
  PermissionStore store{files, directory / "Velmora/permissions.json"};
};

TEST_F(PermissionMemoryTest, AMovedTabGetsANewIdAndKeepsTheStricterPermission) {
  for (const auto policy : {SessionPolicy::safe, SessionPolicy::selective}) {
    const auto found = policy == SessionPolicy::safe ? managed : readOnly;
    for (const auto& [former, kept] :
         {std::pair(managed, found), {allowed, found}, {readOnly, readOnly}, {blocked, blocked}}) {
      showTab(1, "%0");
      const auto bridge = run(policy);
      bridge->set(former);
      const auto before = bridge->only().sessionId;
      showTab(2, "%0");
      const auto after = bridge->only();
      EXPECT_NE(after.sessionId, before);
      EXPECT_EQ(after.permission, kept);
      EXPECT_EQ(bridge->registry.session(after.sessionId).permission, kept);
    }
  }
}

TEST_F(PermissionMemoryTest, AMovedTabKeepsAlsoWhatAnEarlierPolicyGaveIt) {
  const auto bridge = run(SessionPolicy::selective);
  EXPECT_EQ(bridge->only().permission, readOnly);
  bridge->sessions.setPolicy(SessionPolicy::safe);
  showTab(2, "%0");
  EXPECT_EQ(bridge->only().permission, readOnly);
}

TEST_F(PermissionMemoryTest, WhatTheUserWithheldOutlivesARestart) {
  for (const auto& [chosen, found] :
       {std::pair(blocked, blocked), {readOnly, readOnly}, {managed, managed}}) {
    run()->set(chosen);
    showTab(3, "%0");
    EXPECT_EQ(run()->only().permission, found);
  }
  EXPECT_FALSE(files.exists(store.fileURL())) << "nothing is withheld any more";
}

TEST_F(PermissionMemoryTest, WhatOnlyThePolicyWithheldDoesNot) {
  EXPECT_EQ(run(SessionPolicy::selective)->only().permission, readOnly);
  EXPECT_EQ(run(SessionPolicy::safe)->only().permission, managed);
}

TEST_F(PermissionMemoryTest, AnotherTabIsNotMistakenForIt) {
  run()->set(blocked);
  showTab(1, "%1");
  EXPECT_EQ(run()->only().permission, managed);
  showTab(1, "%0", "tmux 3 4");
  EXPECT_EQ(run()->only().permission, managed);
}

TEST_F(PermissionMemoryTest, ATabWithoutAnIdentityIsNotRemembered) {
  terminal.tabs[0].identity.reset();
  run()->set(blocked);
  EXPECT_EQ(run()->only().permission, managed);
  EXPECT_FALSE(files.exists(store.fileURL()));
}

TEST_F(PermissionMemoryTest, WhatATerminalNoLongerListsIsForgotten) {
  run()->set(blocked);
  showTab(1, "%1");
  {
    const auto bridge = run();
    bridge->set(blocked);
  }
  ASSERT_EQ(store.load().size(), 1u);
  EXPECT_EQ(store.load()[0].tab.tab, "%1");
  // Another server says nothing of that one's tabs.
  showTab(1, "%7", "tmux 3 4");
  run()->set(readOnly);
  EXPECT_EQ(store.load().size(), 2u);
}

TEST_F(PermissionMemoryTest, TheFileIsPrivateAndBounded) {
  std::vector<KeptPermission> many;
  for (std::size_t i = 0; i <= PermissionStore::mostKept; ++i)
    many.push_back({{"tmux 1 1", "%" + std::to_string(i)}, blocked});
  store.save(many);
  EXPECT_EQ(testing::modeOf(store.fileURL()), 0600u);
  EXPECT_EQ(store.load().size(), PermissionStore::mostKept);
  EXPECT_EQ(store.load().front().tab.tab, "%1") << "the oldest goes first";
}

TEST_F(PermissionMemoryTest, AFileThatCannotBeReadOpensNothingAndStays) {
  testing::writeFile(store.fileURL(), "no permissions");
  Bridge bridge(terminal, store, SessionPolicy::safe, log.log());
  EXPECT_ANY_THROW(bridge.memory.load());
  EXPECT_EQ(bridge.only().permission, readOnly);
  bridge.set(managed);
  EXPECT_EQ(bridge.only().permission, managed) << "the user may open it";
  EXPECT_EQ(testing::contentOf(store.fileURL()), "no permissions");
  EXPECT_TRUE(bridge.sessions.create({}).permission == managed);
}

TEST_F(PermissionMemoryTest, AFailureToKeepItIsLoggedAndTheRunGoesOn) {
  testing::writeFile(directory / "Velmora", "no folder");
  const auto bridge = std::make_unique<Bridge>(terminal, store, SessionPolicy::safe, log.log());
  bridge->set(blocked);
  EXPECT_EQ(bridge->only().permission, blocked);
  EXPECT_THAT(log.all(), ::testing::Contains(::testing::HasSubstr("will be forgotten with this run")));
}

}  // namespace
}  // namespace velmora
