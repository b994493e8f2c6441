#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "BridgeCore/HistoryStore/HistoryStore.h"
#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "System/StagedFile.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/LogLines.h"
#include "tests/support/SampleRecords.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using ::testing::AnyOf;
using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::modeOf;
using testing::namesIn;
using testing::numberedUuid;
using testing::sampleRecord;
using testing::structuredError;
using testing::writeFile;

constexpr PrivacyRetentionSettings everythingKept{
    .persistentHistoryEnabled = true, .storeCommandBody = true, .storeOutputPreview = true};
constexpr PrivacyRetentionSettings nothing{};

class HistoryStoreTest : public ::testing::Test {
 protected:
  static MCPRequestRecord withPreview(const std::string& preview) {
    auto record = sampleRecord();
    record.outputPreview = preview;
    return record;
  }

  static MCPRequestRecord numbered(std::uint64_t number) {
    auto record = sampleRecord();
    record.requestId = numberedUuid(number);
    return record;
  }

  std::string storedPreview(const std::string& preview, std::int64_t mostCharacters) {
    auto settings = everythingKept;
    settings.outputPreviewMaxCharacters = mostCharacters;
    store.save({withPreview(preview)}, settings);
    return store.load().at(0).outputPreview.value();
  }

  TemporaryDirectory directory;
  testing::HookedFileSystem files;
  std::filesystem::path folder = directory / "Velmora";
  std::filesystem::path file = folder / "history.json";
  std::filesystem::path unreadable = folder / "history.json.unreadable";
  testing::LogLines log;
  HistoryStore store{files, file, log.log()};
};

TEST_F(HistoryStoreTest, TouchesNoFileWhenItIsMade) {
  EXPECT_EQ(store.fileURL(), file);
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(HistoryStoreTest, LoadsNothingWithoutAFile) {
  EXPECT_THAT(store.load(), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(HistoryStoreTest, WritesTheDocumentSortedAndPretty) {
  MCPRequestRecord small{
      .requestId = numberedUuid(2), .receivedAt = Date{816999999.75}, .client = {"other", {}}};
  store.save({sampleRecord(), small}, everythingKept);
  testing::expectGolden("stores/history.json", contentOf(file));
}

TEST_F(HistoryStoreTest, WritesAnEmptyHistoryToo) {
  store.save({}, everythingKept);
  EXPECT_THAT(store.load(), IsEmpty());
  EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(HistoryStoreTest, ReadsBackWhatItWroteInTheSameOrder) {
  const std::vector<MCPRequestRecord> records{numbered(3), numbered(1), numbered(2)};
  store.save(records, everythingKept);
  EXPECT_EQ(store.load(), records);
}

TEST_F(HistoryStoreTest, DeletesTheFileWhenHistoryIsNotKept) {
  store.save({sampleRecord()}, everythingKept);
  store.save({sampleRecord()}, nothing);
  EXPECT_THAT(namesIn(folder), IsEmpty());
  store.save({sampleRecord()}, nothing);
  EXPECT_THAT(namesIn(folder), IsEmpty());
}

TEST_F(HistoryStoreTest, CreatesNoFolderWhenHistoryIsNotKept) {
  store.save({sampleRecord()}, nothing);
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(HistoryStoreTest, StoresNoCommandsWhenTheyAreOff) {
  auto settings = everythingKept;
  settings.storeCommandBody = false;
  const std::vector<MCPRequestRecord> records{sampleRecord()};
  store.save(records, settings);
  EXPECT_EQ(records.at(0), sampleRecord());
  auto expected = sampleRecord();
  expected.commandBody.reset();
  expected.commandSummary.reset();
  EXPECT_THAT(store.load(), ElementsAre(expected));
  EXPECT_THAT(contentOf(file), ::testing::Not(::testing::HasSubstr("commandSummary")));
  EXPECT_THAT(contentOf(file), ::testing::Not(::testing::HasSubstr("commandBody")));
}

TEST_F(HistoryStoreTest, StoresNoPreviewsWhenTheyAreOff) {
  auto settings = everythingKept;
  settings.storeOutputPreview = false;
  store.save({sampleRecord()}, settings);
  auto expected = sampleRecord();
  expected.outputPreview.reset();
  EXPECT_THAT(store.load(), ElementsAre(expected));
  EXPECT_THAT(contentOf(file), ::testing::Not(::testing::HasSubstr("outputPreview")));
}

TEST_F(HistoryStoreTest, CutsPreviewsToTheirFirstCharacters) {
  EXPECT_EQ(storedPreview("abcdefghijklmnopqrstuvwxy", 10), "abcdefghij");
  EXPECT_EQ(storedPreview("short", 10), "short");
  EXPECT_EQ(storedPreview("anything", 0), "");
  EXPECT_EQ(storedPreview("\U0001F468\u200D\U0001F469\u200D\U0001F467\r\nxyz", 2),
            "\U0001F468\u200D\U0001F469\u200D\U0001F467\r\n");
}

TEST_F(HistoryStoreTest, KeepsFileAndFolderToTheUser) {
  std::filesystem::create_directories(folder);
  std::filesystem::permissions(folder, std::filesystem::perms(0777));
  writeFile(file, "old");
  std::filesystem::permissions(file, std::filesystem::perms(0666));
  store.save({sampleRecord()}, everythingKept);
  EXPECT_EQ(modeOf(file), 0600u);
  EXPECT_EQ(modeOf(folder), 0700u);
  EXPECT_THAT(namesIn(folder), ElementsAre("history.json"));
}

TEST_F(HistoryStoreTest, RefusesAnotherSchema) {
  const std::string stored = R"({"schemaVersion": 2, "records": []})";
  writeFile(file, stored);
  EXPECT_EQ(structuredError([&] { store.load(); }), storageError(StorageFailure::historySchema));
  EXPECT_EQ(contentOf(file), stored);
}

TEST_F(HistoryStoreTest, SaysThatAFileCannotBeRead) {
  for (const auto* stored :
       {"", "no JSON", "{\"schemaVersion\": 1", "[]", R"({"schemaVersion": 1})", R"({"records": []})",
        R"({"schemaVersion": 1, "records": [{}]})", R"({"schemaVersion": 1, "records": {}})"}) {
    writeFile(file, stored);
    EXPECT_EQ(structuredError([&] { store.load(); }), storageError(StorageFailure::historyUnreadable))
        << stored;
    EXPECT_EQ(contentOf(file), stored);
  }
}

TEST_F(HistoryStoreTest, SaysThatDatesMustBeText) {
  store.save({sampleRecord()}, everythingKept);
  auto stored = contentOf(file);
  for (auto at = stored.find("Z\""); at != std::string::npos; at = stored.find("Z\"")) {
    const auto start = stored.rfind('"', at);
    stored.replace(start, at + 2 - start, "817000000");
  }
  writeFile(file, stored);
  EXPECT_EQ(structuredError([&] { store.load(); }), storageError(StorageFailure::historyUnreadable));
}

TEST_F(HistoryStoreTest, SaysThatAFileCannotBeReadWhenTheDiskFails) {
  store.save({sampleRecord()}, everythingKept);
  files.failOn("read", std::errc::io_error);
  EXPECT_EQ(structuredError([&] { store.load(); }), storageError(StorageFailure::historyUnreadable));
  files.work();
  EXPECT_THAT(store.load(), ElementsAre(sampleRecord()));
}

TEST_F(HistoryStoreTest, KeepsAnUnreadableFileBesideTheNextSave) {
  for (const auto* stored : {"no JSON", R"({"schemaVersion": 2, "records": []})"}) {
    writeFile(file, stored);
    structuredError([&] { store.load(); });
    EXPECT_EQ(contentOf(file), stored);
    store.save({sampleRecord()}, everythingKept);
    EXPECT_THAT(store.load(), ElementsAre(sampleRecord()));
    EXPECT_EQ(contentOf(unreadable), stored);
    store.save({}, everythingKept);
    EXPECT_EQ(contentOf(unreadable), stored);
    EXPECT_THAT(namesIn(folder), ElementsAre("history.json", "history.json.unreadable"));
  }
}

TEST_F(HistoryStoreTest, SavesAlsoWhenTheUnreadableFileIsGone) {
  writeFile(file, "no JSON");
  structuredError([&] { store.load(); });
  std::filesystem::remove(file);
  store.save({sampleRecord()}, everythingKept);
  EXPECT_THAT(namesIn(folder), ElementsAre("history.json"));
}

TEST_F(HistoryStoreTest, ReplacesAFileThatItNeverFailedToRead) {
  writeFile(file, "no JSON");
  store.save({sampleRecord()}, everythingKept);
  EXPECT_THAT(namesIn(folder), ElementsAre("history.json"));
}

TEST_F(HistoryStoreTest, DeletesTheUnreadableFileWithTheOther) {
  const std::vector<std::function<void()>> deletions{
      [this] { store.delete_(); },
      [this] { HistoryStore::delete_(files, file); },
      [this] { store.save({}, nothing); },
  };
  for (const auto& deletion : deletions) {
    writeFile(file, "x");
    writeFile(unreadable, "y");
    writeFile(file.string() + ".tmp", "what a crash of an earlier version left");
    writeFile(file.string() + ".tmp.12ab", "what a crash left");
    deletion();
    EXPECT_THAT(namesIn(folder), IsEmpty());
  }
}

TEST_F(HistoryStoreTest, LeavesNothingWhereALinkInItsPlaceLed) {
  const auto target = directory / "elsewhere/kept.json";
  const auto link = [&](const std::string& content) {
    writeFile(target, content);
    std::filesystem::remove(file);
    std::filesystem::create_symlink(target, file);
  };
  std::filesystem::create_directories(folder);
  const auto stored = R"({"schemaVersion":1,"records":[]})";
  link(stored);
  EXPECT_THAT(store.load(), IsEmpty());
  store.save({numbered(1)}, everythingKept);
  EXPECT_THAT(store.load(), ElementsAre(numbered(1)));
  EXPECT_FALSE(std::filesystem::exists(target));
  EXPECT_FALSE(std::filesystem::is_symlink(file));
  link(stored);
  store.delete_();
  EXPECT_FALSE(std::filesystem::exists(target));
  EXPECT_THAT(namesIn(folder), IsEmpty());
  // What cannot be read is kept as it is, until it is deleted.
  link("no history");
  structuredError([&] { store.load(); });
  store.save({}, everythingKept);
  EXPECT_EQ(contentOf(unreadable), "no history");
  store.delete_();
  EXPECT_FALSE(std::filesystem::exists(target));
}

TEST_F(HistoryStoreTest, DeletesNothingSuccessfully) {
  store.delete_();
  HistoryStore::delete_(files, file);
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(HistoryStoreTest, SaysThatTheFileCannotBeDeleted) {
  store.save({}, everythingKept);
  files.failOn("remove", std::errc::read_only_file_system);
  const auto expected = storageError(StorageFailure::historyUndeleted);
  EXPECT_EQ(structuredError([&] { store.delete_(); }), expected);
  EXPECT_EQ(structuredError([&] { HistoryStore::delete_(files, file); }), expected);
  EXPECT_EQ(structuredError([&] { store.save({}, nothing); }), expected);
  EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(HistoryStoreTest, SaysThatTheFilesModeCannotBeSet) {
  files.before = [&](const auto& operation, const auto& path) {
    if (operation == "setMode" && path == file)
      throw std::system_error(std::make_error_code(std::errc::io_error));
  };
  EXPECT_EQ(structuredError([&] { store.save({}, everythingKept); }),
            storageError(StorageFailure::historyPermissions));
}

TEST_F(HistoryStoreTest, PassesOnThatTheFoldersModeCannotBeSet) {
  files.failOn("setMode", std::errc::operation_not_permitted);
  EXPECT_EQ(structuredError([&] { store.save({}, everythingKept); }),
            storageError(StorageFailure::directoryPermissions));
}

TEST_F(HistoryStoreTest, SaysThatItCouldNotSave) {
  const auto expected = storageError(StorageFailure::historyUnsaved);
  for (const auto error :
       {std::errc::no_space_on_device, std::errc::read_only_file_system, std::errc::permission_denied}) {
    for (const auto* operation : {"createDirectories", "create", "rename"}) {
      files.failOn(operation, error);
      EXPECT_EQ(structuredError([&] { store.save({}, everythingKept); }), expected) << operation;
    }
  }
}

TEST_F(HistoryStoreTest, AFolderThatCannotBeFlushedIsNoFailureOfTheSave) {
  files.failOn("flushDirectory", std::errc::io_error);
  store.save({numbered(1)}, everythingKept);
  EXPECT_THAT(store.load(), ElementsAre(numbered(1)));
  EXPECT_EQ(log.count("may be lost in a power failure"), 1u);
}

TEST_F(HistoryStoreTest, TellsTheLogWhatTheErrorsLeaveOut) {
  files.failOn("create", std::errc::no_space_on_device);
  structuredError([&] { store.save({sampleRecord()}, everythingKept); });
  files.failOn("remove", std::errc::read_only_file_system);
  writeFile(file, R"({"schemaVersion": 1, "records": [{}]})");
  structuredError([&] { store.delete_(); });
  structuredError([&] { store.load(); });
  const auto line = [&](const std::string& words) {
    return "warning history: " + file.string() + ": " + words;
  };
  EXPECT_THAT(log.all(),
              ElementsAre(line("History could not be saved locally. (create: No space left on device)"),
                          line("History could not be deleted."),
                          line("Stored history could not be read. (records[0].requestId: missing)")));
}

TEST_F(HistoryStoreTest, SaysThatItCouldNotSaveWhereAFileIsInTheWay) {
  writeFile(folder, "a file where the folder belongs");
  EXPECT_EQ(structuredError([&] { store.save({}, everythingKept); }),
            storageError(StorageFailure::historyUnsaved));
}

TEST_F(HistoryStoreTest, SaysThatItCouldNotSaveADateThatHasNoText) {
  auto record = sampleRecord();
  record.receivedAt = Date{1e12};
  EXPECT_EQ(structuredError([&] { store.save({record}, everythingKept); }),
            storageError(StorageFailure::historyUnsaved));
}

TEST_F(HistoryStoreTest, KeepsTheOldFileWhereverASaveFailsBeforeItIsReplaced) {
  int step = 0;
  for (;; ++step) {
    store.save({numbered(1)}, everythingKept);
    files.failAt(step, false, std::errc::no_space_on_device);
    try {
      store.save({numbered(2)}, everythingKept);
    } catch (const StructuredError& error) {
      EXPECT_EQ(error.code, ErrorCode::historyStorageFailed);
    }
    const bool failed = files.failed();
    files.work();
    if (!failed) break;
    EXPECT_THAT(store.load(), ElementsAre(numbered(step < 4 ? 1u : 2u))) << step;
    EXPECT_THAT(namesIn(folder), ElementsAre("history.json")) << step;
  }
  EXPECT_EQ(step, 6);  // the folder and its mode, create, rename, flush, the file's mode
}

TEST_F(HistoryStoreTest, LosesNothingWhereverTheMachineStopsInASave) {
  for (int step = 0;; ++step) {
    store.save({numbered(1)}, everythingKept);
    files.failAt(step, true);
    bool failed = false;
    try {
      store.save({numbered(2)}, everythingKept);
    } catch (const StructuredError&) {
      failed = true;
    }
    files.work();
    if (!failed) break;
    StagedFile::removeLeftovers(files, file);
    HistoryStore afterRestart(files, file);
    EXPECT_THAT(afterRestart.load(), AnyOf(ElementsAre(numbered(1)), ElementsAre(numbered(2)))) << step;
    afterRestart.save({numbered(3)}, everythingKept);
    EXPECT_THAT(namesIn(folder), ElementsAre("history.json")) << step;
  }
}

TEST_F(HistoryStoreTest, NeverLosesAnUnreadableFileWhereverASaveFails) {
  for (const bool andAllAfter : {false, true}) {
    for (int step = 0;; ++step) {
      std::filesystem::remove_all(folder);
      writeFile(file, "no JSON");
      structuredError([&] { store.load(); });
      files.failAt(step, andAllAfter, std::errc::no_space_on_device);
      bool failed = false;
      try {
        store.save({numbered(2)}, everythingKept);
      } catch (const StructuredError&) {
        failed = true;
      }
      files.work();
      if (!failed) break;
      EXPECT_THAT((std::vector{contentOf(file), contentOf(unreadable)}), ::testing::Contains("no JSON"))
          << step;
      if (step < 4) {
        EXPECT_EQ(contentOf(file), "no JSON") << step;
      }
    }
  }
}

TEST_F(HistoryStoreTest, NeverLetsSavesDeletionsAndLoadsInterleave) {
  std::atomic<int> inside{0};
  std::atomic<int> most{0};
  files.before = [&](const auto&, const auto&) {
    const int now = inside.fetch_add(1) + 1;
    if (now > most.load()) most.store(now);
    std::this_thread::yield();
    inside.fetch_sub(1);
  };
  const std::vector<MCPRequestRecord> one(40, numbered(1));
  const std::vector<MCPRequestRecord> two(80, numbered(2));
  std::vector<std::thread> threads;
  for (const auto* records : {&one, &two}) {
    threads.emplace_back([this, records] {
      for (int round = 0; round < 30; ++round) store.save(*records, everythingKept);
    });
  }
  threads.emplace_back([this] {
    for (int round = 0; round < 30; ++round) store.delete_();
  });
  for (int round = 0; round < 30; ++round) EXPECT_THAT(store.load(), AnyOf(one, two, IsEmpty()));
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(most.load(), 1);
}

}  // namespace
}  // namespace velmora
