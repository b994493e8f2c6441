#include <gmock/gmock.h>

#include <cerrno>
#include <map>
#include <set>
#include <system_error>

#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/PersonRouter.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/LogLines.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

using testing::numberedUuid;

class PersonRouterTest : public testing::CoreFixture {
 protected:
  static PersonRequest request(PersonVerb verb, JSONObject arguments = {}) {
    return {.requestId = numberedUuid(500),
            .client = {"velmora", "1.0", 42},
            .operation = verb,
            .arguments = std::move(arguments)};
  }
  LocalControlResponse ask(const PersonRequest& request) {
    return decodeJson<LocalControlResponse>(router.answer(encodeJson(request), {}, peer));
  }
  LocalControlResponse ask(PersonVerb verb, JSONObject arguments = {}) {
    return ask(request(verb, std::move(arguments)));
  }
  template <class Payload>
  Payload payload(PersonVerb verb, JSONObject arguments = {}) {
    const auto response = ask(verb, std::move(arguments));
    EXPECT_TRUE(response.ok) << (response.error ? response.error->message : "");
    return decodeJson<Payload>(encodeJson(response.data.value()));
  }
  ErrorCode refusal(PersonVerb verb, JSONObject arguments = {}) {
    const auto response = ask(verb, std::move(arguments));
    EXPECT_FALSE(response.ok);
    return response.error.value().code;
  }
  SessionPermission permissionOf(const Uuid& id) { return registry.session(id).permission; }

  testing::LogLines log;
  RequestRecorder recorder{time.clock()};
  HistoryStore historyStore{files, directory.path() / "Velmora" / "history.json"};
  PauseStore pauseStore{files, directory.path() / "Velmora" / "paused"};
  BridgeCoordinator coordinator{terminal,     registry,     state,     recorder, settingsStore,
                                historyStore, time.clock(), log.log(), nullptr,  &pauseStore};
  int changes = 0;
  // Process 42 runs on a terminal of the user's own.
  std::map<pid_t, RunningProcess> processes{{42, {.name = "velmora", .parent = 1, .terminal = "/dev/pts/9"}}};
  std::chrono::steady_clock::time_point steady{};
  std::vector<std::string> shown;
  bool showFails = false;
  std::optional<bool> authority{};  // what the system's own says of process 42
  PersonPeer peer{.process = 42};
  PersonRouter router{
      coordinator,
      log.log(),
      [this] { ++changes; },
      {.lookUp =
           [this](pid_t process) {
             const auto found = processes.find(process);
             return found == processes.end() ? std::nullopt : std::optional(found->second);
           },
       .show =
           [this](const std::filesystem::path& device, std::string_view text) {
             if (showFails) throw std::system_error(EIO, std::generic_category());
             shown.push_back(device.string() + ": " + std::string(text));
           },
       .newWord = [] { return std::string("bcdf"); },
       .authority = [this](pid_t process) { return process == 42 ? authority : std::nullopt; },
       .now = [this] { return steady; }}};
};

TEST_F(PersonRouterTest, TellsHowTheBridgeIsAndWhatItAllowsWithoutARecord) {
  registerTab();
  const auto status = payload<PersonStatus>(PersonVerb::status);
  EXPECT_EQ(status.status.terminalState, TerminalState::available);
  EXPECT_EQ(status.limits, PersonLimits{});
  EXPECT_TRUE(recorder.snapshot().empty());
}

TEST_F(PersonRouterTest, ListsTheSessionsWithWhatTheTerminalCallsThem) {
  terminal.tabs = {testing::tab("/dev/ttys001", 11)};
  terminal.tabs[0].targets = {"%5", "work:1.0"};
  const auto listed = payload<PersonSessions>(PersonVerb::sessions).sessions;
  ASSERT_EQ(listed.size(), 1u);
  EXPECT_EQ(listed[0].session.tty, "/dev/ttys001");
  EXPECT_EQ(listed[0].targets, (std::vector<std::string>{"%5", "work:1.0"}));
}

TEST_F(PersonRouterTest, PausesAtOnceAndForTheNextRunToo) {
  const auto id = registerTab();
  EXPECT_TRUE(payload<PersonLimits>(PersonVerb::pause).paused);
  EXPECT_TRUE(pauseStore.isKept());
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(log.count("info calls: by the user: paused"), 1u);
  EXPECT_EQ(coordinator.sendCommand(numberedUuid(1), {"agent", {}}, {id, "ls"}).error->code,
            ErrorCode::mcpPaused);
}

TEST_F(PersonRouterTest, PausesAlsoWhereThePauseCannotBeKept) {
  testing::writeFile(directory.path() / "Velmora", "no folder");
  const auto response = ask(PersonVerb::pause);
  EXPECT_TRUE(response.ok);
  ASSERT_EQ(response.warnings.size(), 1u);
  EXPECT_EQ(response.warnings[0].code, ErrorCode::historyStorageFailed);
  EXPECT_EQ(state.current(), MCPState::paused);
}

TEST_F(PersonRouterTest, WithholdsASessionForAnyoneAndGivesNothingBack) {
  const auto id = registerTab();
  const auto named = [&](const char* permission) {
    return JSONObject{{"session", id.toString()}, {"permission", permission}};
  };
  EXPECT_EQ(payload<PersonSession>(PersonVerb::permit, named("readOnly")).session.permission,
            SessionPermission::readOnly);
  peer.process = 43;  // which nobody knows
  EXPECT_EQ(refusal(PersonVerb::permit, named("managed")), ErrorCode::sessionNotAllowed);
  EXPECT_EQ(refusal(PersonVerb::permit, named("allowed")), ErrorCode::sessionNotAllowed);
  EXPECT_EQ(permissionOf(id), SessionPermission::readOnly);
  payload<PersonSession>(PersonVerb::permit, named("blocked"));
  EXPECT_EQ(refusal(PersonVerb::permit, named("readOnly")), ErrorCode::sessionNotAllowed);
  EXPECT_EQ(permissionOf(id), SessionPermission::blocked);
  EXPECT_EQ(refusal(PersonVerb::permit, {{"session", "%9"}, {"permission", "blocked"}}),
            ErrorCode::sessionNotFound);
  EXPECT_EQ(changes, 2);
}

TEST_F(PersonRouterTest, WithholdsASessionWhileTheTerminalHangs) {
  const auto id = registerTab();
  terminal.listingsHang = true;
  payload<PersonSession>(PersonVerb::permit, {{"session", id.toString()}, {"permission", "blocked"}});
  EXPECT_EQ(permissionOf(id), SessionPermission::blocked);
}

TEST_F(PersonRouterTest, TightensThePolicyAndStoresItForAnyone) {
  EXPECT_TRUE(ask(PersonVerb::policy, {{"policy", "safe"}}).ok) << "nothing changes";
  EXPECT_EQ(payload<PersonLimits>(PersonVerb::policy, {{"policy", "selective"}}).sessionPolicy,
            SessionPolicy::selective);
  EXPECT_EQ(settingsStore.load().sessionPolicy, SessionPolicy::selective);
  peer.process = 43;
  EXPECT_EQ(refusal(PersonVerb::policy, {{"policy", "safe"}}), ErrorCode::sessionNotAllowed);
  registerTab();
  EXPECT_EQ(payload<PersonStatus>(PersonVerb::status).limits.sessionPolicy, SessionPolicy::selective);
}

TEST_F(PersonRouterTest, RefusesInputToBusySessionsForAnyone) {
  allowBusyInput();
  EXPECT_TRUE(ask(PersonVerb::busyInput, {{"allowed", true}}).ok) << "nothing changes";
  EXPECT_FALSE(payload<PersonLimits>(PersonVerb::busyInput, {{"allowed", false}}).allowBusySessionInput);
  EXPECT_FALSE(settingsStore.load().allowBusySessionInput);
  peer.process = 43;
  EXPECT_EQ(refusal(PersonVerb::busyInput, {{"allowed", true}}), ErrorCode::sessionNotAllowed);
}

TEST_F(PersonRouterTest, NarrowsInputToBusySessionsToThoseOfAgentsForAnyone) {
  allowBusyInput();
  peer.process = 43;
  auto limits = payload<PersonLimits>(PersonVerb::busyInput, {{"allowed", false}, {"own", true}});
  EXPECT_FALSE(limits.allowBusySessionInput);
  EXPECT_EQ(limits.allowOwnBusySessionInput, true);
  EXPECT_EQ(settingsStore.load().allowOwnBusySessionInput, true);
  EXPECT_EQ(refusal(PersonVerb::busyInput, {{"allowed", true}}), ErrorCode::sessionNotAllowed);
  limits = payload<PersonLimits>(PersonVerb::busyInput, {{"allowed", false}});
  EXPECT_EQ(limits.allowOwnBusySessionInput, std::nullopt);
  EXPECT_EQ(settingsStore.load().allowOwnBusySessionInput, std::nullopt);
  EXPECT_EQ(refusal(PersonVerb::busyInput, {{"allowed", false}, {"own", true}}),
            ErrorCode::sessionNotAllowed);
}

TEST_F(PersonRouterTest, ShowsTheHistoryNewestFirstByTimeToolAndSession) {
  const auto id = registerTab();
  coordinator.status(numberedUuid(1), {"one", {}});
  time.advance(100);
  coordinator.sendCommand(numberedUuid(2), {"two", {}}, {id, "ls"});
  const auto ids = [&](JSONObject arguments) {
    std::vector<Uuid> found;
    for (const auto& record : payload<PersonHistory>(PersonVerb::history, std::move(arguments)).records)
      found.push_back(record.requestId);
    return found;
  };
  using Ids = std::vector<Uuid>;
  EXPECT_EQ(ids({}), (Ids{numberedUuid(2), numberedUuid(1)}));
  EXPECT_EQ(ids({{"since", time.now().secondsSinceReferenceDate - 50}}), Ids{numberedUuid(2)});
  EXPECT_EQ(ids({{"tool", "terminal_status"}}), Ids{numberedUuid(1)});
  EXPECT_EQ(ids({{"session", id.toString()}}), Ids{numberedUuid(2)});
  EXPECT_EQ(ids({{"session", numberedUuid(99).toString()}}), Ids{});
  EXPECT_EQ(refusal(PersonVerb::history, {{"session", "work:9.9"}}), ErrorCode::sessionNotFound);
}

TEST_F(PersonRouterTest, LeavesOutTheOldestOfAHistoryThatNoFrameCouldCarry) {
  auto settings = settingsStore.current();
  settings.persistentHistoryEnabled = settings.storeCommandBody = true;
  settingsStore.save(settings);
  const auto id = registerTab();
  const std::string command(60'000, 'x');
  for (std::uint64_t call = 1; call <= 20; ++call)
    coordinator.sendCommand(numberedUuid(call), {"agent", {}}, {id, command});
  const auto history = payload<PersonHistory>(PersonVerb::history);
  EXPECT_TRUE(history.more);
  EXPECT_GT(history.records.size(), 10u);
  EXPECT_EQ(history.records[0].requestId, numberedUuid(20));
}

TEST_F(PersonRouterTest, AnswersWhatItCannotDoWithAnError) {
  auto other = request(PersonVerb::pause);
  other.protocolVersion = 2;
  EXPECT_EQ(ask(other).error->message, unsupportedProtocolVersionMessage);
  EXPECT_EQ(refusal(PersonVerb::permit, {{"session", "x"}}), ErrorCode::invalidArgument);
  EXPECT_EQ(refusal(PersonVerb::permit, {{"session", "x"}, {"permission", "all"}}),
            ErrorCode::invalidArgument);
  EXPECT_THROW(router.answer(R"({"operation":"terminal_status"})", {}, peer), JsonDecodeError);
  EXPECT_EQ(state.current(), MCPState::active);
}

// What a user's word gives agents.
class PersonRouterWordTest : public PersonRouterTest {
 protected:
  std::string confirm(const std::string& word) {
    const auto response = ask(PersonVerb::confirm, {{"word", word}});
    return response.ok ? "done" : response.error->message;
  }
  void pause() {
    ask(PersonVerb::pause);
    changes = 0;
  }
};

TEST_F(PersonRouterWordTest, ShowsTheWordOnTheTerminalAndNeverToThePeer) {
  pause();
  const auto challenge = payload<PersonChallenge>(PersonVerb::resume);
  EXPECT_EQ(challenge, (PersonChallenge{"/dev/pts/9", 60}));
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(
      shown[0],
      "/dev/pts/9: \r\nVelmora: agents could type and open windows again.\r\nTo allow it, type this word: "
      "bcdf\r\n");
  EXPECT_EQ(state.current(), MCPState::paused);
  EXPECT_EQ(confirm("bcdf"), "done");
  EXPECT_EQ(state.current(), MCPState::active);
  EXPECT_FALSE(pauseStore.isKept());
  EXPECT_EQ(changes, 1);
}

TEST_F(PersonRouterWordTest, TakesOneTryAWordWithinAMinuteOnTheSameConnectionAndTerminal) {
  pause();
  EXPECT_EQ(confirm("bcdf"), "There is nothing to confirm.");
  ask(PersonVerb::resume);
  EXPECT_EQ(confirm("xxxx"), "That is not the word that was shown.");
  EXPECT_EQ(confirm("bcdf"), "There is nothing to confirm.");
  ask(PersonVerb::resume);
  steady += std::chrono::seconds(61);
  EXPECT_EQ(confirm("bcdf"), "The word counts for a minute, which is over.");
  ask(PersonVerb::resume);
  processes[42].terminal = "/dev/pts/8";
  EXPECT_EQ(confirm("bcdf"), "The terminal has changed meanwhile.");
  processes[42].terminal = "/dev/pts/9";
  ask(PersonVerb::resume);
  PersonPeer other{.process = 42};
  std::swap(peer, other);
  EXPECT_EQ(confirm("bcdf"), "There is nothing to confirm.");
  EXPECT_EQ(state.current(), MCPState::paused);
}

TEST_F(PersonRouterWordTest, IsAskedForAgainWhenTheTerminalBecameOneThatAgentsTypeInto) {
  pause();
  ask(PersonVerb::resume);
  terminal.tabs = {testing::tab("/dev/pts/9", 11)};
  EXPECT_THAT(confirm("bcdf"), ::testing::HasSubstr("agents can type into the one"));
  EXPECT_EQ(refusal(PersonVerb::resume), ErrorCode::sessionNotAllowed);
  EXPECT_EQ(state.current(), MCPState::paused);
}

TEST_F(PersonRouterWordTest, GivesBackPermissionPolicyAndBusyInput) {
  const auto id = registerTab(SessionPermission::blocked);
  ask(PersonVerb::permit, {{"session", id.toString()}, {"permission", "allowed"}});
  EXPECT_EQ(permissionOf(id), SessionPermission::blocked);
  EXPECT_THAT(shown.back(), ::testing::HasSubstr("read and type into \"title of /dev/ttys001\""));
  EXPECT_EQ(confirm("bcdf"), "done");
  EXPECT_EQ(permissionOf(id), SessionPermission::allowed);
  ask(PersonVerb::policy, {{"policy", "selective"}});
  ask(PersonVerb::policy, {{"policy", "safe"}});
  EXPECT_EQ(confirm("bcdf"), "done");
  EXPECT_EQ(settingsStore.load().sessionPolicy, SessionPolicy::safe);
  ask(PersonVerb::busyInput, {{"allowed", true}});
  EXPECT_EQ(confirm("bcdf"), "done");
  EXPECT_TRUE(settingsStore.load().allowBusySessionInput);
  ask(PersonVerb::busyInput, {{"allowed", false}});
  ask(PersonVerb::busyInput, {{"allowed", false}, {"own", true}});
  EXPECT_THAT(shown.back(), ::testing::HasSubstr("programs that run in windows that they opened"));
  EXPECT_EQ(settingsStore.load().allowOwnBusySessionInput, std::nullopt);
  EXPECT_EQ(confirm("bcdf"), "done");
  EXPECT_EQ(settingsStore.load().allowOwnBusySessionInput, true);
}

TEST_F(PersonRouterWordTest, IsNotAskedForWhereNothingChanges) {
  EXPECT_FALSE(payload<PersonLimits>(PersonVerb::resume).paused);
  EXPECT_TRUE(shown.empty());
}

TEST_F(PersonRouterWordTest, IsNotAskedForWhereItCannotBeShown) {
  pause();
  showFails = true;
  EXPECT_EQ(refusal(PersonVerb::resume), ErrorCode::sessionNotAllowed);
  EXPECT_EQ(confirm("bcdf"), "There is nothing to confirm.");
}

TEST_F(PersonRouterWordTest, IsAskedForThoughNoTerminalRuns) {
  pause();
  terminal.failWith("listSessions", catalogue::terminalNotRunning("", std::nullopt));
  EXPECT_EQ(payload<PersonChallenge>(PersonVerb::resume).wordShownOn, "/dev/pts/9");
  EXPECT_EQ(confirm("bcdf"), "done");
}

TEST_F(PersonRouterWordTest, IsNotAskedForWhereTheSystemAsksTheUser) {
  authority = false;
  state.set(MCPState::paused);
  EXPECT_EQ(refusal(PersonVerb::resume), ErrorCode::sessionNotAllowed);
  EXPECT_EQ(state.current(), MCPState::paused);
  processes[42].terminal = "/dev/ttys001";
  authority = true;
  EXPECT_TRUE(ask(PersonVerb::resume).ok) << "also from a pane, where the password is as secret";
  EXPECT_EQ(state.current(), MCPState::active);
  EXPECT_TRUE(shown.empty());
  state.set(MCPState::paused);
  Caller gone;
  gone.hasLeft = [] { return true; };
  const auto late =
      decodeJson<LocalControlResponse>(router.answer(encodeJson(request(PersonVerb::resume)), gone, peer));
  EXPECT_FALSE(late.ok) << "nobody waits for it any more";
  EXPECT_EQ(state.current(), MCPState::paused);
}

TEST_F(PersonRouterTest, ShowsWhoWatchesWhatAgentsTypeAndStoresNothingOfIt) {
  const auto id = registerTab();
  coordinator.sendCommand(numberedUuid(1), {"agent", {}}, {id, "too early"});
  EXPECT_TRUE(payload<PersonEvents>(PersonVerb::events).requests.empty());
  coordinator.sendCommand(numberedUuid(2), {"agent", {}}, {id, "ls"});
  coordinator.sendKey(numberedUuid(3), {"agent", {}}, {id, TerminalKey::upArrow, 3});
  registry.setPermission(SessionPermission::blocked, id);
  time.advance(1);
  coordinator.sendCommand(numberedUuid(4), {"agent", {}}, {id, "rm x"});
  const auto seen = payload<PersonEvents>(PersonVerb::events);
  ASSERT_EQ(seen.requests.size(), 3u);
  EXPECT_EQ(seen.missed, 0);
  EXPECT_EQ(seen.requests[0].requestId, numberedUuid(2));
  EXPECT_EQ(seen.requests[0].status, RequestStatus::delivered);
  EXPECT_EQ(seen.requests[0].commandBody, "ls");
  EXPECT_EQ(seen.requests[1].commandBody, "upArrow x3");
  EXPECT_EQ(seen.requests[2].commandBody, "rm x");
  EXPECT_EQ(seen.requests[2].error.value().code, ErrorCode::sessionNotAllowed);
  for (const auto& record : recorder.snapshot()) EXPECT_EQ(record.commandBody, std::nullopt);
}

TEST_F(PersonRouterTest, ResumesNothingBeforeTheIntroductionIsAnswered) {
  coordinator.holdPause(true);
  EXPECT_EQ(refusal(PersonVerb::resume), ErrorCode::sessionNotAllowed);
  EXPECT_TRUE(shown.empty()) << "no word is asked for in vain";
  EXPECT_EQ(state.current(), MCPState::paused);
  coordinator.holdPause(false);
  EXPECT_EQ(state.current(), MCPState::paused) << "whoever held it resumes";
  payload<PersonChallenge>(PersonVerb::resume);
}

TEST_F(PersonRouterTest, RefusesAgentsTheTerminalOnWhichAUserWatchesForAsLongAsTheConnectionLives) {
  const auto id = registerTab();
  PersonPeer watching{.process = 43};
  processes[43] = {.name = "velmora-watch", .parent = 1, .terminal = registry.session(id).tty};
  const auto watch = encodeJson(request(PersonVerb::watch));
  const auto isRefused = [&](const auto& result) {
    return !result.ok && result.error.value().code == ErrorCode::sessionNotAllowed;
  };
  EXPECT_EQ(decodeJson<LocalControlResponse>(router.answer(watch, {}, watching))
                .data.value()
                .find("terminal")
                ->storage,
            decltype(JSONValue::storage)(registry.session(id).tty));
  EXPECT_TRUE(isRefused(coordinator.sendCommand(numberedUuid(1), {"agent", {}}, {id, "p"})));
  EXPECT_TRUE(isRefused(coordinator.sendKey(numberedUuid(2), {"agent", {}}, {id, TerminalKey::return_, 1})));
  EXPECT_TRUE(isRefused(coordinator.readOutput(numberedUuid(3), {"agent", {}}, {id})));
  EXPECT_TRUE(isRefused(coordinator.focusSession(numberedUuid(4), {"agent", {}}, {id})));
  EXPECT_EQ(payload<PersonSessions>(PersonVerb::sessions).sessions.at(0).session.permission,
            SessionPermission::blocked);
  EXPECT_EQ(permissionOf(id), SessionPermission::managed) << "what the user set is not touched";
  EXPECT_EQ(log.count("info calls: agents are refused " + registry.session(id).tty +
                      ", where the user watches with process 43, \"velmora-watch\""),
            1u);
  router.answer(watch, {}, watching);
  watching = {};
  EXPECT_TRUE(coordinator.sendCommand(numberedUuid(5), {"agent", {}}, {id, "ls"}).ok);
}

TEST_F(PersonRouterTest, HoldsATerminalNoLongerThanTheProcessHasIt) {
  const auto id = registerTab();
  const auto tty = registry.session(id).tty;
  std::uint64_t calls = 0;
  const auto isRefused = [&] {
    return !coordinator.sendCommand(numberedUuid(++calls), {"agent", {}}, {id, "ls"}).ok;
  };
  const auto watch = [&] { return ask(PersonVerb::watch).ok; };
  const RunningProcess watching{.name = "velmora-watch", .startedAt = 1'000.0, .parent = 1, .terminal = tty};
  processes[42] = watching;
  EXPECT_TRUE(watch());
  EXPECT_TRUE(isRefused());
  processes[42].terminal.reset();  // it has ended; the next one may get its name
  EXPECT_FALSE(isRefused());
  processes[42] = watching;
  EXPECT_TRUE(isRefused());
  processes[42].startedAt = 2'000.0;
  EXPECT_FALSE(isRefused()) << "another process has the number";
  processes[42].startTicks = 77;
  EXPECT_TRUE(watch());
  processes[42].startedAt = 2'001.0;
  EXPECT_TRUE(isRefused()) << "the system's clock was set";
  processes[42].startTicks = 78;
  EXPECT_FALSE(isRefused()) << "another process has the number";
  processes.erase(42);
  EXPECT_FALSE(isRefused());
}

TEST_F(PersonRouterTest, EndsTheDialogueOfTheSystemWithTheBridge) {
  const UserPresence presence;
  PersonRouter ending(coordinator, log.log(), {}, presence);
  ending.cancel();
  const ChildRequest dialogue{.program = "/bin/sleep",
                              .arguments = {"5"},
                              .environment = {},
                              .deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1),
                              .outputLimit = 1};
  EXPECT_EQ(presence.programs->run(dialogue).end, ChildResult::End::cancelled);
}

TEST_F(PersonRouterTest, HoldsNoTerminalForAProcessWithoutOne) {
  processes[42].terminal.reset();
  EXPECT_EQ(refusal(PersonVerb::watch), ErrorCode::sessionNotAllowed);
  processes.clear();
  EXPECT_EQ(refusal(PersonVerb::watch), ErrorCode::sessionNotAllowed);
}

TEST(RandomWord, HasFourLettersAndIsHardlyEverTheSame) {
  std::set<std::string> words;
  for (int time = 0; time < 20; ++time) {
    words.insert(randomWord());
    EXPECT_THAT(*words.begin(), ::testing::MatchesRegex("[bcdfghjkmnpqrstvwxz][a-z][a-z][a-z]"));
  }
  EXPECT_GT(words.size(), 15u);
}

}  // namespace
}  // namespace velmora
