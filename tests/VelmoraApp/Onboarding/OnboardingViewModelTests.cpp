#include "VelmoraApp/Onboarding/OnboardingViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/ModelRows.h"

namespace velmora {
namespace {

using testing::countOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::spinUntil;
using testing::texts;
using Step = OnboardingViewModel::Step;

class OnboardingViewModelTest : public testing::AppFixture {
 protected:
  explicit OnboardingViewModelTest(SessionPolicy stored = SessionPolicy::safe) {
    if (stored != SessionPolicy::safe) writeSettings({.sessionPolicy = stored});
    options.onboardingCompleted = false;
    app = std::make_unique<AppModel>(options);
    onboarding.emplace(*app, firstRun, context);
  }

  /// Goes to the choice of the policy and waits for the sessions.
  void choose() {
    for (int step = 0; step < 2; ++step) onboarding->next();
    ASSERT_TRUE(spinUntil([this] { return !onboarding->found().isEmpty(); }));
  }

  GuideContext context{.terminal = GuidedTerminal::tmux,
                       .preferredLanguages = {"en"},
                       .installPath = "/usr/bin/velmora-app",
                       .helperPath = "/usr/bin/velmora"};
  IniFileDefaults defaults{QString::fromStdString((directory / "some.conf").string())};
  FirstRunController firstRun{defaults};
  std::optional<OnboardingViewModel> onboarding;
};

TEST_F(OnboardingViewModelTest, StartsAtTheFirstStepWithTheSafePolicy) {
  EXPECT_TRUE(onboarding->needed());
  EXPECT_EQ(onboarding->step(), Step::scope);
  EXPECT_EQ(onboarding->policy(), SessionPolicy::safe);
  EXPECT_FALSE(onboarding->canGoBack());
  EXPECT_EQ(onboarding->progress(), "Step 1 of 4");
}

TEST_F(OnboardingViewModelTest, GoesThroughTheStepsAndBackAndNoFurther) {
  const auto changes = countOf(*onboarding, &OnboardingViewModel::stepChanged);
  onboarding->back();
  EXPECT_EQ(onboarding->step(), Step::scope);
  EXPECT_EQ(*changes, 0);
  for (const auto step : {Step::permission, Step::policy, Step::connection}) {
    onboarding->next();
    EXPECT_EQ(onboarding->step(), step);
    EXPECT_EQ(onboarding->choosesPolicy(), step == Step::policy);
    EXPECT_TRUE(onboarding->canGoBack());
  }
  EXPECT_EQ(*changes, 3);
  onboarding->next();
  EXPECT_EQ(onboarding->step(), Step::connection);
  EXPECT_EQ(*changes, 3);
  EXPECT_EQ(onboarding->progress(), "Step 4 of 4");
  EXPECT_TRUE(firstRun.needsOnboarding());
  for (const auto step : {Step::policy, Step::permission, Step::scope}) {
    onboarding->back();
    EXPECT_EQ(onboarding->step(), step);
  }
}

TEST_F(OnboardingViewModelTest, ShowsThePageOfItsStep) {
  for (const auto& page : onboardingPages(GuidedTerminal::tmux)) {
    EXPECT_EQ(onboarding->title(), text(page.title));
    EXPECT_EQ(onboarding->text(), text(page.text));
    EXPECT_EQ(onboarding->symbol(), text(page.symbol));
    EXPECT_EQ(onboarding->forwardText(), page.step == Step::connection ? "Finish" : "Continue");
    onboarding->next();
  }
}

TEST_F(OnboardingViewModelTest, KeepsTheChosenPolicyWhereverOneGoes) {
  EXPECT_THAT(texts(onboarding->policies()),
              ElementsAre("Safe: managed sessions only", "Selective: existing sessions start read-only"));
  EXPECT_THAT(texts(onboarding->policyCaptions()),
              ElementsAre("Agents may type into every idle session of yours.",
                          "Agents may read your sessions, and type only into windows that they opened."));
  const auto changes = countOf(*onboarding, &OnboardingViewModel::policyChanged);
  onboarding->setPolicyIndex(1);
  EXPECT_EQ(onboarding->policy(), SessionPolicy::selective);
  for (const int index : {2, -1}) onboarding->setPolicyIndex(index);
  EXPECT_EQ(onboarding->policyIndex(), 1);
  EXPECT_EQ(*changes, 3) << "what was refused is shown again";
  onboarding->next();
  onboarding->back();
  EXPECT_EQ(onboarding->policy(), SessionPolicy::selective);
}

TEST_F(OnboardingViewModelTest, FinishingStoresThePolicyAndStartsTheApplication) {
  onboarding->setPolicyIndex(1);
  const auto changes = countOf(*onboarding, &OnboardingViewModel::neededChanged);
  for (int step = 0; step < 4; ++step) {
    EXPECT_TRUE(onboarding->needed());
    EXPECT_EQ(defaults.text("sessionPolicy"), "") << "nothing before the end";
    EXPECT_THAT(prompts, IsEmpty());
    onboarding->forward();
  }
  EXPECT_FALSE(onboarding->needed());
  EXPECT_EQ(*changes, 1);
  EXPECT_TRUE(defaults.boolean("onboardingCompleted", false));
  EXPECT_EQ(defaults.text("sessionPolicy"), "selective");
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(2); }));
  EXPECT_EQ(app->settings().sessionPolicy, SessionPolicy::selective);
  EXPECT_EQ(app->coordinator().settingsStore().load().sessionPolicy, SessionPolicy::selective);
  EXPECT_THAT(prompts, ::testing::SizeIs(4));
  for (const auto& session : app->sessions()) EXPECT_EQ(session.permission, SessionPermission::readOnly);
}

// The loading, which is not waited for, must not change the policy for a moment.
class EachPolicy : public OnboardingViewModelTest, public ::testing::WithParamInterface<SessionPolicy> {
 protected:
  EachPolicy() : OnboardingViewModelTest(SessionPolicy::selective) {}
};

TEST_P(EachPolicy, HoldsForSessionsThatAgentsListedMeanwhile) {
  app->coordinator().setSessionPolicy(SessionPolicy::selective);  // as the loading does
  const auto listed = app->coordinator().listSessions(options.bridge.uuid(), {"a client", {}}, {});
  const auto id = listed.data->sessions.at(0).sessionId;
  const auto send = [&] {
    return app->coordinator().sendCommand(options.bridge.uuid(), {"a client", {}}, {id, "ls"}).error;
  };
  EXPECT_EQ(send()->code, ErrorCode::mcpPaused);
  onboarding->setPolicyIndex(static_cast<int>(GetParam()));
  for (int step = 0; step < 4; ++step) onboarding->forward();
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(2); }));
  EXPECT_EQ(app->status().mcpState, MCPState::active);
  const auto error = send();
  EXPECT_EQ(error ? std::optional(error->code) : std::nullopt,
            GetParam() == SessionPolicy::safe ? std::nullopt : std::optional(ErrorCode::sessionNotAllowed));
}

INSTANTIATE_TEST_SUITE_P(OnboardingViewModel, EachPolicy,
                         ::testing::Values(SessionPolicy::safe, SessionPolicy::selective));

TEST_F(OnboardingViewModelTest, ShowsTheSessionsAndWhatTheChoiceMeansForThem) {
  terminal->tabs[1].busy = true;
  EXPECT_EQ(onboarding->found(), "");
  choose();
  EXPECT_EQ(onboarding->found(), "Open now: title of /dev/ttys001, title of /dev/ttys002");
  EXPECT_EQ(onboarding->consequence(),
            "Agents will be able to type into all of these; into the busy ones (1) when they are idle.");
  const auto changes = countOf(*onboarding, &OnboardingViewModel::foundChanged);
  onboarding->setPolicyIndex(1);
  EXPECT_EQ(*changes, 1);
  EXPECT_EQ(onboarding->consequence(), "Agents will type into none of these unless you allow it.");
  for (const auto& session : app->sessions()) EXPECT_EQ(session.permission, SessionPermission::readOnly);
  EXPECT_FALSE(app->isStarted());
}

TEST_F(OnboardingViewModelTest, NamesAFewSessionsAndCountsTheOthers) {
  for (int number = 3; number <= 6; ++number)
    terminal->tabs.push_back(testing::tab("/dev/ttys00" + std::to_string(number), number, number));
  terminal->tabs[0].title = std::string(100, 'x');
  choose();
  EXPECT_EQ(onboarding->found(),
            "Open now: " + QString(29, 'x') + "…, title of /dev/ttys002, title of /dev/ttys003, 3 more");
  EXPECT_EQ(onboarding->consequence(), "Agents will be able to type into all of these.");
}

TEST_F(OnboardingViewModelTest, WithoutSessionsItSaysSo) {
  terminal->tabs.clear();
  choose();
  EXPECT_EQ(onboarding->found(), "No session is open now.");
  EXPECT_EQ(onboarding->consequence(), "");
}

TEST_F(OnboardingViewModelTest, ATerminalThatAsksForPermissionIsLeftAlone) {
  context.terminal = GuidedTerminal::terminalApp;
  onboarding.emplace(*app, firstRun, context);
  for (int step = 0; step < 3; ++step) onboarding->next();
  QCoreApplication::processEvents();
  EXPECT_EQ(onboarding->found(), "");
  EXPECT_THAT(terminal->calls(), IsEmpty());
}

TEST_F(OnboardingViewModelTest, FinishesOnce) {
  for (int step = 0; step < 4; ++step) onboarding->forward();
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(2); }));
  firstRun.complete(SessionPolicy::selective);
  onboarding->forward();
  EXPECT_EQ(defaults.text("sessionPolicy"), "selective") << "a second press changes nothing any more";
  EXPECT_THAT(prompts, ::testing::SizeIs(4));
}

TEST_F(OnboardingViewModelTest, LeavingBeforeTheEndLeavesItDue) {
  onboarding->setPolicyIndex(1);
  for (int step = 0; step < 3; ++step) onboarding->forward();
  app->prepareForTermination();
  EXPECT_THAT(testing::contentOf(directory / "some.conf"), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(settingsFile()));
  EXPECT_TRUE(FirstRunController(defaults).needsOnboarding());
}

}  // namespace
}  // namespace velmora
