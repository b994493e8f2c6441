#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"
#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeModels/Json/JsonReader.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/LogLines.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using ::testing::AnyOf;
using testing::contentOf;
using ::testing::ElementsAre;
using testing::modeOf;
using testing::namesIn;
using testing::structuredError;
using testing::writeFile;

class PrivacySettingsStoreTest : public ::testing::Test {
 protected:
  TemporaryDirectory directory;
  testing::HookedFileSystem files;
  std::filesystem::path folder = directory / "Velmora";
  std::filesystem::path file = folder / "settings.json";
  PrivacyRetentionSettings initial{.retentionDays = 0, .maximumRecordCount = 20000};
  testing::LogLines log;
  PrivacySettingsStore store{files, file, initial, log.log()};
};

TEST_F(PrivacySettingsStoreTest, StartsWithTheInitialValueAsItIs) {
  EXPECT_EQ(store.current(), initial);
  EXPECT_EQ(store.fileURL(), file);
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(PrivacySettingsStoreTest, LoadsTheInitialValueWithoutAFileAndCreatesNone) {
  EXPECT_EQ(store.load(), initial);
  EXPECT_EQ(store.current(), initial);
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(PrivacySettingsStoreTest, WritesTheDocumentSortedAndPretty) {
  store.save({.persistentHistoryEnabled = true,
              .storeCommandBody = true,
              .retentionDays = 30,
              .sessionPolicy = SessionPolicy::selective});
  testing::expectGolden("stores/settings.json", contentOf(file));
}

TEST_F(PrivacySettingsStoreTest, TellsTheLogWhatIsOddInTheFile) {
  writeFile(file, R"({"schemaVersion": 1, "settings": {"sesionPolicy": "selective", "retentionDays": 0,
                      "maximumRecordCount": 50000, "outputPreviewMaxCharacters": 10000, "storeCommandBody": true}})");
  EXPECT_EQ(store.load(),
            (PrivacyRetentionSettings{
                .retentionDays = 1, .maximumRecordCount = 10000, .outputPreviewMaxCharacters = 10000}));
  const auto line = [&](const std::string& words) {
    return "warning settings: " + file.string() + ": " + words;
  };
  EXPECT_THAT(log.all(), ElementsAre(line("retentionDays is 0; 1 holds"),
                                     line("maximumRecordCount is 50000; 10000 holds"),
                                     line("no setting is called \"sesionPolicy\"")));
}

TEST_F(PrivacySettingsStoreTest, KeepsAChoiceThatMostUsersNeverMake) {
  PrivacyRetentionSettings settings;
  settings.tmuxTransport = TmuxTransportChoice::program;
  store.save(settings);
  EXPECT_EQ(store.load().tmuxTransport, TmuxTransportChoice::program);
  settings.tmuxTransport.reset();
  store.save(settings);
  EXPECT_EQ(contentOf(file).find("tmux"), std::string::npos);
}

TEST_F(PrivacySettingsStoreTest, RefusesAWayToAskTmuxThatThereIsNot) {
  writeFile(file, R"({"schemaVersion": 1, "settings": {"tmuxTransport": "carrier pigeon"}})");
  EXPECT_THROW(store.load(), JsonDecodeError);
}

TEST_F(PrivacySettingsStoreTest, TellsTheLogWhyTheFileCannotBeRead) {
  writeFile(file, R"({"schemaVersion": 2, "settings": {}})");
  structuredError([&] { store.load(); });
  writeFile(file, R"({"schemaVersion": 1, "settings": {"retentionDays": "seven"}})");
  EXPECT_THROW(store.load(), JsonDecodeError);
  const auto line = [&](const std::string& words) {
    return "error settings: " + file.string() + ": " + words;
  };
  EXPECT_THAT(log.all(), ElementsAre(line("The settings schema is not supported."),
                                     line("settings.retentionDays: expected a 64-bit integer")));
}

TEST_F(PrivacySettingsStoreTest, HasNothingToSayOfWhatItWrote) {
  store.save({.retentionDays = 30});
  store.load();
  EXPECT_THAT(log.all(), ::testing::IsEmpty());
}

TEST_F(PrivacySettingsStoreTest, ReadsBackWhatItWrote) {
  PrivacyRetentionSettings saved{.persistentHistoryEnabled = true,
                                 .storeOutputPreview = true,
                                 .maskSensitivePatterns = false,
                                 .deleteOnAppExit = false,
                                 .allowBusySessionInput = true,
                                 .retentionDays = 365,
                                 .maximumRecordCount = 10000,
                                 .outputPreviewMaxCharacters = 0,
                                 .sessionPolicy = SessionPolicy::selective,
                                 .menuBarEnabled = false,
                                 .launchAtLoginEnabled = true};
  store.save(saved);
  EXPECT_EQ(store.current(), saved);
  PrivacySettingsStore other(files, file, {});
  EXPECT_EQ(other.load(), saved);
  EXPECT_EQ(other.current(), saved);
}

TEST_F(PrivacySettingsStoreTest, StoresValuesInTheirRanges) {
  store.save({.retentionDays = 0, .maximumRecordCount = 0, .outputPreviewMaxCharacters = -5});
  EXPECT_EQ(store.current().retentionDays, 1);
  EXPECT_EQ(store.current().maximumRecordCount, 1);
  EXPECT_EQ(store.current().outputPreviewMaxCharacters, 0);
  EXPECT_THAT(contentOf(file), ::testing::HasSubstr("\"retentionDays\": 1,"));
  store.save({.retentionDays = 1000, .maximumRecordCount = 50000, .outputPreviewMaxCharacters = 20000});
  PrivacySettingsStore other(files, file, {});
  EXPECT_EQ(other.load(),
            (PrivacyRetentionSettings{
                .retentionDays = 365, .maximumRecordCount = 10000, .outputPreviewMaxCharacters = 10000}));
}

TEST_F(PrivacySettingsStoreTest, StoresNothingSensitiveWithoutPersistentHistory) {
  store.save({.persistentHistoryEnabled = false, .storeCommandBody = true, .storeOutputPreview = true});
  EXPECT_FALSE(store.current().storeCommandBody);
  EXPECT_FALSE(store.current().storeOutputPreview);
  EXPECT_THAT(contentOf(file), ::testing::HasSubstr("\"storeCommandBody\": false"));
}

TEST_F(PrivacySettingsStoreTest, BringsALoadedValueIntoRangeButLeavesTheFile) {
  const std::string stored =
      R"({"schemaVersion": 1, "settings": {"retentionDays": 400, "storeCommandBody": true}})";
  writeFile(file, stored);
  EXPECT_EQ(store.load(), (PrivacyRetentionSettings{.retentionDays = 365}));
  EXPECT_EQ(store.current().retentionDays, 365);
  EXPECT_EQ(contentOf(file), stored);
}

TEST_F(PrivacySettingsStoreTest, TakesTheDefaultsForMissingKeys) {
  writeFile(file, R"({"schemaVersion": 1, "settings": {}, "unknown": 3})");
  EXPECT_EQ(store.load(), PrivacyRetentionSettings());
}

TEST_F(PrivacySettingsStoreTest, RefusesAnotherSchema) {
  writeFile(file, R"({"schemaVersion": 2, "settings": {"retentionDays": 9}})");
  EXPECT_EQ(structuredError([&] { store.load(); }), storageError(StorageFailure::settingsSchema));
  EXPECT_EQ(store.current(), initial);
}

TEST_F(PrivacySettingsStoreTest, PassesOnWhatTheDecoderReports) {
  for (const auto* stored : {"", "{", "[]", "{}", R"({"schemaVersion": 1})", R"({"settings": {}})",
                             R"({"schemaVersion": "1", "settings": {}})",
                             R"({"schemaVersion": 1, "settings": {"retentionDays": "9"}})",
                             R"({"schemaVersion": 1, "settings": {"sessionPolicy": "open"}})"}) {
    writeFile(file, stored);
    EXPECT_THROW(store.load(), JsonDecodeError) << stored;
    EXPECT_EQ(store.current(), initial);
    EXPECT_EQ(contentOf(file), stored);
  }
}

TEST_F(PrivacySettingsStoreTest, PassesOnAReadFailure) {
  std::filesystem::create_directories(file);
  EXPECT_THROW(store.load(), std::system_error);
  EXPECT_EQ(store.current(), initial);
}

TEST_F(PrivacySettingsStoreTest, KeepsFileAndFolderToTheUser) {
  std::filesystem::create_directories(folder);
  std::filesystem::permissions(folder, std::filesystem::perms(0777));
  writeFile(file, "old");
  std::filesystem::permissions(file, std::filesystem::perms(0666));
  store.save({});
  EXPECT_EQ(modeOf(file), 0600u);
  EXPECT_EQ(modeOf(folder), 0700u);
  EXPECT_THAT(namesIn(folder), ElementsAre("settings.json"));
}

TEST_F(PrivacySettingsStoreTest, FailsWithTheStorageErrorWhenTheFilesModeCannotBeSet) {
  files.before = [&](const auto& operation, const auto& path) {
    if (operation == "setMode" && path == file)
      throw std::system_error(std::make_error_code(std::errc::io_error));
  };
  EXPECT_EQ(structuredError([&] { store.save({}); }), storageError(StorageFailure::settingsPermissions));
  EXPECT_EQ(store.current(), initial);
}

TEST_F(PrivacySettingsStoreTest, FailsWithTheStorageErrorWhenTheFoldersModeCannotBeSet) {
  files.failOn("setMode", std::errc::operation_not_permitted);
  EXPECT_EQ(structuredError([&] { store.save({}); }), storageError(StorageFailure::directoryPermissions));
  EXPECT_EQ(store.current(), initial);
}

TEST_F(PrivacySettingsStoreTest, KeepsWhatItCouldNotReadBesideWhatItSaves) {
  writeFile(file, R"({"schemaVersion":1,"settings":{"sessionPolicy":"selective",}})");
  EXPECT_ANY_THROW(store.load());
  store.save({.retentionDays = 3});
  EXPECT_EQ(store.load().retentionDays, 3);
  EXPECT_THAT(contentOf(placeOfUnreadable(file)), ::testing::HasSubstr("selective"));
  store.save({.retentionDays = 4});
  EXPECT_THAT(contentOf(placeOfUnreadable(file)), ::testing::HasSubstr("selective"));
  EXPECT_THAT(namesIn(folder), ElementsAre("settings.json", "settings.json.unreadable"));
}

TEST_F(PrivacySettingsStoreTest, KeepsTheValueAndAWholeFileWhereverASaveFails) {
  const PrivacyRetentionSettings before{.retentionDays = 3};
  const PrivacyRetentionSettings after{.retentionDays = 4};
  int step = 0;
  for (;; ++step) {
    store.save(before);
    const auto oldContent = contentOf(file);
    files.failAt(step, step % 2 == 0, std::errc::no_space_on_device);
    try {
      store.save(after);
    } catch (const std::system_error& error) {
      EXPECT_EQ(error.code(), std::errc::no_space_on_device);
    } catch (const StructuredError& error) {
      EXPECT_EQ(error.code, ErrorCode::historyStorageFailed);
    }
    const bool failed = files.failed();
    files.work();
    if (!failed) break;
    EXPECT_EQ(store.current(), before) << step;
    PrivacySettingsStore other(files, file, {});
    EXPECT_THAT(other.load(), AnyOf(before, after)) << step;
    if (step < 4) {
      EXPECT_EQ(contentOf(file), oldContent) << step;
    }
  }
  EXPECT_EQ(step, 6);  // the folder and its mode, create, rename, flush, the file's mode
  EXPECT_EQ(store.current(), after);
}

TEST_F(PrivacySettingsStoreTest, ShowsReadersTheOldOrTheNewValueOnly) {
  const PrivacyRetentionSettings odd{
      .retentionDays = 11, .maximumRecordCount = 11, .outputPreviewMaxCharacters = 11};
  const PrivacyRetentionSettings even{
      .retentionDays = 22, .maximumRecordCount = 22, .outputPreviewMaxCharacters = 22};
  store.save(odd);
  std::thread writer([&] {
    for (int round = 0; round < 50; ++round) store.save(round % 2 == 0 ? even : odd);
  });
  std::thread loader([&] {
    for (int round = 0; round < 50; ++round) EXPECT_THAT(store.load(), AnyOf(odd, even));
  });
  for (int round = 0; round < 1000; ++round) EXPECT_THAT(store.current(), AnyOf(odd, even));
  writer.join();
  loader.join();
}

}  // namespace
}  // namespace velmora
