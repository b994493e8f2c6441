#include "VelmoraApp/Settings/PrivacySettingsViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/ModelRows.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::countOf;
using ::testing::ElementsAre;
using testing::spinUntil;
using ::testing::StartsWith;

class PrivacySettingsViewModelTest : public testing::AppFixture {
 protected:
  void start(const PrivacyRetentionSettings& stored = {}) {
    writeSettings(stored);
    startApp();
    settings = std::make_unique<PrivacySettingsViewModel>(*app);
  }

  /// What the settings file holds, when every save is done.
  PrivacyRetentionSettings stored() { return app->coordinator().settingsStore().current(); }
  bool comesToStore(const PrivacyRetentionSettings& expected) {
    return spinUntil([&] { return stored() == expected; }) && settingsInFile() == expected;
  }
  PrivacyRetentionSettings settingsInFile() {
    PosixFileSystem files;
    return PrivacySettingsStore(files, settingsFile(), {}).load();
  }

  std::unique_ptr<PrivacySettingsViewModel> settings;
};

TEST_F(PrivacySettingsViewModelTest, ShowsWhatIsStored) {
  start({.persistentHistoryEnabled = true,
         .storeCommandBody = true,
         .deleteOnAppExit = false,
         .allowBusySessionInput = true,
         .retentionDays = 30,
         .maximumRecordCount = 500,
         .outputPreviewMaxCharacters = 300,
         .sessionPolicy = SessionPolicy::selective});
  EXPECT_TRUE(settings->persistentHistoryEnabled());
  EXPECT_TRUE(settings->storeCommandBody());
  EXPECT_FALSE(settings->storeOutputPreview());
  EXPECT_FALSE(settings->deleteOnAppExit());
  EXPECT_TRUE(settings->allowBusySessionInput());
  EXPECT_EQ(settings->retentionDays(), 30);
  EXPECT_EQ(settings->maximumRecordCount(), 500);
  EXPECT_EQ(settings->outputPreviewMaxCharacters(), 300);
  EXPECT_EQ(settings->sessionPolicyIndex(), 1);
  EXPECT_THAT(testing::texts(settings->sessionPolicyLabels()),
              ElementsAre("Safe: managed sessions only", "Selective: existing sessions start read-only"));
}

TEST_F(PrivacySettingsViewModelTest, SaysWhatKeepingAndDeletingComeToTogether) {
  start();
  EXPECT_EQ(settings->historyCaption(), "The history is kept in memory only, until Velmora ends.");
  settings->setPersistentHistoryEnabled(true);
  settings->setDeleteOnAppExit(true);
  EXPECT_EQ(settings->historyCaption(),
            "The history is on disk while Velmora runs, and deleted when it ends.");
  settings->setDeleteOnAppExit(false);
  EXPECT_EQ(settings->historyCaption(), "The history stays on disk when Velmora ends.");
}

TEST_F(PrivacySettingsViewModelTest, EveryControlSavesAtOnce) {
  start();
  PrivacyRetentionSettings expected;
  const auto expectStored = [&](auto change, auto edit) {
    change(expected);
    edit();
    EXPECT_TRUE(comesToStore(expected));
  };
  expectStored([](auto& want) { want.persistentHistoryEnabled = true; },
               [this] { settings->setPersistentHistoryEnabled(true); });
  expectStored([](auto& want) { want.deleteOnAppExit = false; },
               [this] { settings->setDeleteOnAppExit(false); });
  expectStored([](auto& want) { want.retentionDays = 8; }, [this] { settings->setRetentionDays(8); });
  expectStored([](auto& want) { want.maximumRecordCount = 1100; },
               [this] { settings->setMaximumRecordCount(1100); });
  expectStored([](auto& want) { want.outputPreviewMaxCharacters = 0; },
               [this] { settings->setOutputPreviewMaxCharacters(0); });
  expectStored([](auto& want) { want.allowBusySessionInput = true; },
               [this] { settings->setAllowBusySessionInput(true); });
  expectStored([](auto& want) { want.sessionPolicy = SessionPolicy::selective; },
               [this] { settings->setSessionPolicyIndex(1); });
}

TEST_F(PrivacySettingsViewModelTest, WhatHasNoControlKeepsItsStoredValue) {
  start({.maskSensitivePatterns = false, .menuBarEnabled = false, .launchAtLoginEnabled = true});
  settings->setRetentionDays(9);
  EXPECT_TRUE(comesToStore({.maskSensitivePatterns = false,
                            .retentionDays = 9,
                            .menuBarEnabled = false,
                            .launchAtLoginEnabled = true}));
}

TEST_F(PrivacySettingsViewModelTest, NumbersStopAtTheirBounds) {
  start();
  settings->setRetentionDays(0);
  EXPECT_EQ(settings->retentionDays(), 1);
  settings->setRetentionDays(366);
  EXPECT_EQ(settings->retentionDays(), 365);
  settings->setMaximumRecordCount(-1);
  EXPECT_EQ(settings->maximumRecordCount(), 1);
  settings->setMaximumRecordCount(10001);
  EXPECT_EQ(settings->maximumRecordCount(), 10000);
  settings->setOutputPreviewMaxCharacters(-5);
  EXPECT_EQ(settings->outputPreviewMaxCharacters(), 0);
  settings->setOutputPreviewMaxCharacters(20000);
  EXPECT_EQ(settings->outputPreviewMaxCharacters(), 10000);
}

TEST_F(PrivacySettingsViewModelTest, TheSelectivePolicyOffersToRestrictWhatIsKnown) {
  start({});
  EXPECT_FALSE(settings->restrictsKnownSessions()) << "the policy would not";
  settings->setSessionPolicyIndex(1);
  EXPECT_TRUE(settings->restrictsKnownSessions());
  EXPECT_EQ(settings->restrictText(), "Make the 2 known sessions read-only now");
  andRefresh([this] { app->setPermission(SessionPermission::blocked, app->sessions()[0].sessionId); });
  EXPECT_EQ(settings->restrictText(), "Make the 1 known session read-only now");
  const auto changes = testing::countOf(*settings, &PrivacySettingsViewModel::knownSessionsChanged);
  andRefresh([this] { settings->restrictKnownSessions(); });
  EXPECT_FALSE(settings->restrictsKnownSessions());
  EXPECT_GT(*changes, 0);
  EXPECT_EQ(app->sessions()[0].permission, SessionPermission::blocked);
  EXPECT_EQ(app->sessions()[1].permission, SessionPermission::readOnly);
}

TEST_F(PrivacySettingsViewModelTest, APolicyThatDoesNotExistChangesNothing) {
  start({.sessionPolicy = SessionPolicy::selective});
  settings->setSessionPolicyIndex(-1);
  settings->setSessionPolicyIndex(2);
  EXPECT_EQ(settings->sessionPolicyIndex(), 1);
}

TEST_F(PrivacySettingsViewModelTest, WhatIsSensitiveIsStoredOnlyAfterTheWarning) {
  start({.persistentHistoryEnabled = true});
  const auto before = contentOf(settingsFile());
  const auto changes = countOf(*settings, &PrivacySettingsViewModel::draftChanged);
  settings->setStoreCommandBody(true);
  EXPECT_EQ(settings->warning(), StorageWarning::command);
  EXPECT_FALSE(settings->storeCommandBody());
  EXPECT_EQ(*changes, 1) << "the switch has to go back";
  EXPECT_EQ(contentOf(settingsFile()), before);
  settings->enableAfterWarning();
  EXPECT_FALSE(settings->warns());
  EXPECT_TRUE(comesToStore({.persistentHistoryEnabled = true, .storeCommandBody = true}));
  settings->setStoreOutputPreview(true);
  EXPECT_EQ(settings->warning(), StorageWarning::output);
  settings->enableAfterWarning();
  EXPECT_TRUE(
      comesToStore({.persistentHistoryEnabled = true, .storeCommandBody = true, .storeOutputPreview = true}));
}

TEST_F(PrivacySettingsViewModelTest, ACancelledWarningLeavesTheFileAsItIs) {
  start({.persistentHistoryEnabled = true});
  const auto before = contentOf(settingsFile());
  settings->setStoreCommandBody(true);
  settings->cancelWarning();
  EXPECT_FALSE(settings->warns());
  EXPECT_FALSE(settings->storeCommandBody());
  settings->enableAfterWarning();  // nobody was asked
  andRefresh([this] { app->refreshAll(); });
  EXPECT_EQ(contentOf(settingsFile()), before);
  EXPECT_FALSE(stored().storeCommandBody);
}

TEST_F(PrivacySettingsViewModelTest, TurningStorageOffAsksNothing) {
  start({.persistentHistoryEnabled = true, .storeCommandBody = true, .storeOutputPreview = true});
  settings->setStoreCommandBody(false);
  EXPECT_FALSE(settings->warns());
  EXPECT_TRUE(comesToStore({.persistentHistoryEnabled = true, .storeOutputPreview = true}));
  settings->setStoreOutputPreview(false);
  EXPECT_TRUE(comesToStore({.persistentHistoryEnabled = true}));
}

TEST_F(PrivacySettingsViewModelTest, WithoutAPersistentHistoryNothingSensitiveIsStored) {
  start({.persistentHistoryEnabled = true, .storeCommandBody = true, .storeOutputPreview = true});
  settings->setPersistentHistoryEnabled(false);
  EXPECT_FALSE(settings->storeCommandBody());
  EXPECT_FALSE(settings->storeOutputPreview());
  EXPECT_TRUE(comesToStore({}));
}

TEST_F(PrivacySettingsViewModelTest, AFailedSaveKeepsTheDraftAndSaysWhy) {
  start();
  std::filesystem::remove_all(settingsFile().parent_path());
  testing::writeFile(settingsFile().parent_path(), "a file where the folder should be");
  settings->setRetentionDays(30);
  ASSERT_TRUE(spinUntil([this] { return !settings->problem().isEmpty(); }));
  EXPECT_THAT(settings->problem().toStdString(), StartsWith("The change could not be saved. "));
  EXPECT_EQ(settings->retentionDays(), 30);
  andRefresh([this] { app->refreshAll(); });
  ASSERT_TRUE(spinUntil([this] { return settings->retentionDays() == 7; }));
  EXPECT_FALSE(settings->problem().isEmpty()) << "until it is put away, or a save succeeds";
  std::filesystem::remove(settingsFile().parent_path());
  settings->setRetentionDays(31);
  EXPECT_EQ(settings->problem(), "");
  EXPECT_TRUE(comesToStore({.retentionDays = 31}));
}

TEST_F(PrivacySettingsViewModelTest, ClearingAsksFirst) {
  start();
  ASSERT_TRUE(sendCommand("ls").ok);
  pollRecords();
  settings->clearing()->request();
  EXPECT_TRUE(settings->clearing()->confirmClear());
  EXPECT_FALSE(app->records().empty());
  settings->clearing()->confirm();
  EXPECT_TRUE(spinUntil([this] { return app->records().empty(); }));
}

}  // namespace
}  // namespace velmora
