#include <gmock/gmock.h>

#include "VelmoraHelper/Commands/CellText.h"
#include "VelmoraHelper/Watch/WatchModel.h"
#include "tests/VelmoraHelper/Watch/WatchRecords.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using testing::watchedRequest;
using testing::watchedSession;

class WatchModelTest : public ::testing::Test {
 protected:
  WatchModelTest() {
    testing::useWatchLocale();
    model.resize({80, 20});
  }
  void fill() {
    model.bridgeServes({});
    model.show(testing::watchedSessions());
    model.add(testing::watchedRequests());
  }
  WatchAction press(WatchKey key) { return model.press({key, {}}); }
  WatchAction press(const std::string& characters) {
    WatchAction last;
    for (const char character : characters) last = model.press({WatchKey::character, {character}});
    return last;
  }
  std::vector<std::string> lines() const {
    std::vector<std::string> texts;
    for (const auto& line : model.screen().lines) {
      std::string text;
      for (const auto& run : line) text += run.text;
      texts.push_back(text);
    }
    return texts;
  }
  std::string text() const {
    std::string all;
    for (const auto& line : lines()) all += line + "\n";
    return all;
  }
  std::string requests() const {
    const auto all = text();
    return all.substr(all.find("  TIME "));
  }
  /// The line that keys act upon; empty when there is none.
  std::string selected() const {
    for (const auto& line : lines()) {
      if (line.starts_with("> ")) return line;
    }
    return {};
  }

  WatchModel model;
};

TEST_F(WatchModelTest, FillsEveryLineOfAnySizeAndNeverWidens) {
  fill();
  for (const int columns : {1, 2, 10, 60, 79, 80, 99, 100, 120, 160, 200}) {
    for (const int rows : {1, 2, 5, 8, 24, 60}) {
      model.resize({columns, rows});
      for (const auto* keys : {"", "?", "x", "/", "abc"}) {
        press(keys);
        const auto shown = lines();
        EXPECT_EQ(shown.size(), static_cast<std::size_t>(rows));
        for (const auto& line : shown) {
          EXPECT_LE(columnsOf(line), std::max(columns, 2)) << line;
        }
      }
      press(WatchKey::escape);
    }
  }
}

TEST_F(WatchModelTest, SaysWhetherABridgeServesAndWhatHolds) {
  EXPECT_THAT(lines().front(), HasSubstr("no bridge: connecting"));
  model.bridgeServes({.sessionPolicy = SessionPolicy::selective, .allowBusySessionInput = true});
  EXPECT_THAT(lines().front(), HasSubstr("active  policy selective  busy input on"));
  model.bridgeServes({.allowOwnBusySessionInput = true});
  EXPECT_THAT(lines().front(), HasSubstr("active  policy safe  busy input in agents' windows"));
  model.bridgeServes({.allowBusySessionInput = true, .allowOwnBusySessionInput = true});
  EXPECT_THAT(lines().front(), ::testing::EndsWith("busy input on"));
  model.bridgeServes({.paused = true});
  EXPECT_THAT(lines().front(), HasSubstr("PAUSED"));
  EXPECT_THAT(lines().back(), HasSubstr("r resume"));
  fill();
  model.bridgeIsGone("it has ended; trying again");
  EXPECT_THAT(lines().front(), HasSubstr("no bridge: it has ended; trying again"));
  EXPECT_THAT(text(), HasSubstr("no sessions"));
  EXPECT_THAT(text(), HasSubstr("git status")) << "what was seen stays";
}

TEST_F(WatchModelTest, ShowsWhatAnAgentLastDidInASession) {
  fill();
  EXPECT_THAT(lines().at(2), HasSubstr("12:00:04 command cat <<'EOF'"));
  EXPECT_THAT(lines().at(3), ::testing::StartsWith("  %5       readOnly   busy"));
}

TEST_F(WatchModelTest, FollowsTheNewestRequestUntilTheUserLooksAtAnother) {
  fill();
  EXPECT_THAT(selected(), HasSubstr("12:00:07"));
  model.add({watchedRequest(300, ToolName::status, {}, {}, 1)});
  EXPECT_THAT(selected(), HasSubstr("12:05:00"));
  press(WatchKey::up);
  EXPECT_THAT(selected(), HasSubstr("12:00:07"));
  model.add({watchedRequest(301, ToolName::status, {}, {}, 1)});
  EXPECT_THAT(selected(), HasSubstr("12:00:07"));
  press(WatchKey::end);
  model.add({watchedRequest(302, ToolName::status, {}, {}, 1)});
  EXPECT_THAT(selected(), HasSubstr("12:05:02"));
}

TEST_F(WatchModelTest, KeepsTheNewestRequestsAndTheOneThatIsSelectedInSight) {
  fill();
  for (int number = 10; number < 1'100; ++number)
    model.add({watchedRequest(number, ToolName::status, {}, {}, 1)});
  press(WatchKey::home);
  EXPECT_THAT(selected(), HasSubstr("12:01:40")) << "the oldest of a thousand";
  press(WatchKey::pageDown);
  EXPECT_THAT(selected(), HasSubstr("12:01:53"));
  press("j");
  press("k");
  EXPECT_THAT(selected(), HasSubstr("12:01:53"));
  press(WatchKey::end);
  press(WatchKey::pageUp);
  EXPECT_NE(selected(), "");
}

TEST_F(WatchModelTest, PutsTheHistoryBeforeWhatCameMeanwhileAndKeepsTheTextThatOnlyWatchersSee) {
  model.bridgeServes({});
  model.add({watchedRequest(5, ToolName::sendCommand, '1', "make", 1)});
  auto stored = watchedRequest(5, ToolName::sendCommand, '1', {}, 1);
  stored.status = RequestStatus::delivered;
  model.add({watchedRequest(4, ToolName::readOutput, '1', {}, 1), stored});
  EXPECT_THAT(lines().at(4), HasSubstr("12:00:04"));
  EXPECT_THAT(lines().at(5), HasSubstr("12:00:05"));
  EXPECT_THAT(lines().at(5), HasSubstr("make"));
  EXPECT_EQ(lines().at(6), "");
}

TEST_F(WatchModelTest, FiltersByWhateverARequestShows) {
  fill();
  press("/GIT");
  EXPECT_TRUE(model.screen().cursor);
  EXPECT_EQ(lines().back().substr(0, 4), "/GIT");
  EXPECT_THAT(requests(), HasSubstr("git status"));
  EXPECT_THAT(requests(), Not(HasSubstr("interrupt")));
  press(WatchKey::enter);
  EXPECT_THAT(lines().back(), HasSubstr("/GIT (1 of 7, Esc clears)"));
  press(WatchKey::escape);
  EXPECT_THAT(requests(), HasSubstr("interrupt"));
  for (const auto* filter :
       {"/SESSION_NOT_ALLOWED", "/refused", "/work:1.0", "/terminal_send_key", "/make -j"}) {
    press(filter);
    EXPECT_THAT(requests(), HasSubstr("interrupt")) << filter;
    EXPECT_THAT(requests(), Not(HasSubstr("git status"))) << filter;
    press(WatchKey::escape);
  }
  press("/gitx");
  press(WatchKey::backspace);
  EXPECT_THAT(selected(), HasSubstr("git status"));
}

TEST_F(WatchModelTest, KeysAreTextWhileAFilterIsTyped) {
  fill();
  EXPECT_EQ(press("/qpb").kind, WatchAction::Kind::none);
  EXPECT_THAT(lines().back(), HasSubstr("/qpb"));
}

TEST_F(WatchModelTest, OpensTheWholeOfARequest) {
  fill();
  press(WatchKey::home);
  press("jjj");
  press(WatchKey::enter);
  EXPECT_THAT(text(), HasSubstr("Tool       terminal_send_command"));
  EXPECT_THAT(text(), HasSubstr("Pane       %0 work:0.0"));
  EXPECT_THAT(text(), HasSubstr("Took       12345 ms"));
  EXPECT_THAT(
      text(),
      HasSubstr("Command    cat <<'EOF' >메모.txt\n           안녕하세요 ?[31m빨강\n           EOF\n"));
  model.add({watchedRequest(50, ToolName::status, {}, {}, 1)});
  EXPECT_THAT(text(), HasSubstr("Took       12345 ms")) << "what is open stays";
  press(WatchKey::escape);
  EXPECT_THAT(selected(), HasSubstr("12:00:04"));
  press("j");
  press(WatchKey::enter);
  EXPECT_THAT(text(), HasSubstr("SESSION_NOT_ALLOWED"));
  EXPECT_THAT(text(), HasSubstr("Ask the user"));
}

TEST_F(WatchModelTest, ScrollsALongRequest) {
  fill();
  std::string command = "first";
  for (int line = 0; line < 100; ++line) command += "\n" + std::to_string(line);
  model.add({watchedRequest(60, ToolName::sendCommand, '1', command, 1)});
  press(WatchKey::enter);
  EXPECT_THAT(text(), HasSubstr("first"));
  press(WatchKey::end);
  EXPECT_THAT(text(), HasSubstr("           99\n"));
  EXPECT_THAT(text(), Not(HasSubstr("first")));
  press(WatchKey::home);
  press(WatchKey::pageDown);
  press(WatchKey::pageUp);
  EXPECT_THAT(text(), HasSubstr("first"));
}

TEST_F(WatchModelTest, AsksForWhatItsKeysMean) {
  fill();
  EXPECT_EQ(press("q").kind, WatchAction::Kind::quit);
  EXPECT_EQ(press("p").kind, WatchAction::Kind::pause);
  EXPECT_FALSE(press("p").loosens);
  EXPECT_EQ(press("r").kind, WatchAction::Kind::resume);
  EXPECT_TRUE(press("r").loosens);
  EXPECT_EQ(press("\f").kind, WatchAction::Kind::redraw);
  press("?");
  EXPECT_THAT(text(), HasSubstr("PgUp PgDn"));
  EXPECT_EQ(press("p").kind, WatchAction::Kind::pause) << "from everywhere";
}

TEST_F(WatchModelTest, PermitsTheSelectedSessionAndSaysWhetherThatGivesMore) {
  fill();
  press(WatchKey::tab);
  press("j");
  const auto withhold = press("b");
  EXPECT_EQ(withhold.kind, WatchAction::Kind::permit);
  EXPECT_EQ(withhold.session.value().targets.front(), "%5");
  EXPECT_EQ(withhold.permission, SessionPermission::blocked);
  EXPECT_FALSE(withhold.loosens);
  EXPECT_TRUE(press("m").loosens);
  EXPECT_TRUE(press("a").loosens);
  EXPECT_FALSE(press("o").loosens);
}

TEST_F(WatchModelTest, ActsUponTheSessionOfTheSelectedRequest) {
  fill();
  EXPECT_EQ(press("b").kind, WatchAction::Kind::none) << "the newest request names no session";
  EXPECT_THAT(lines().back(), HasSubstr("Select a session"));
  press(WatchKey::up);
  EXPECT_EQ(press("b").session.value().targets.front(), "%12");
  EXPECT_EQ(press("g").kind, WatchAction::Kind::jump);
  press(WatchKey::tab);
  EXPECT_EQ(press(WatchKey::enter).kind, WatchAction::Kind::jump);
}

TEST_F(WatchModelTest, StaysWithTheSelectedSessionWhenTheirOrderChanges) {
  fill();
  press(WatchKey::tab);
  press("j");
  auto sessions = testing::watchedSessions();
  std::swap(sessions[0], sessions[1]);
  sessions.insert(sessions.begin(), watchedSession('9', {"%20"}, "new", SessionPermission::managed));
  model.show(sessions);
  EXPECT_EQ(press("b").session.value().targets.front(), "%5");
}

TEST_F(WatchModelTest, SaysSomethingUntilTheNextKey) {
  fill();
  model.say("It was \x1B[2J refused.", WatchStyle::warning);
  EXPECT_EQ(lines().back(), "It was ?[2J refused.");
  press(WatchKey::up);
  EXPECT_THAT(lines().back(), HasSubstr("? help"));
}

TEST_F(WatchModelTest, SaysHowManyRequestsCameTooFast) {
  fill();
  model.add({}, 7);
  EXPECT_THAT(lines().front(), HasSubstr("7 not shown"));
}

}  // namespace
}  // namespace velmora
