#include "BridgeCore/HistoryStore/HistoryStore.h"

#include <sys/stat.h>

#include <cstdint>
#include <exception>
#include <system_error>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Text.h"
#include "System/StagedFile.h"

namespace velmora {

namespace {

constexpr std::int64_t historySchema = 1;

struct HistoryDocument {
  std::int64_t schemaVersion = historySchema;
  std::vector<MCPRequestRecord> records{};
};
BOOST_DESCRIBE_STRUCT(HistoryDocument, (), (schemaVersion, records))

void removeWhatMayNotBeStored(MCPRequestRecord& record, const PrivacyRetentionSettings& settings) {
  if (!settings.storeCommandBody) {
    record.commandBody.reset();
    record.commandSummary.reset();
  }
  if (!settings.storeOutputPreview) record.outputPreview.reset();
  if (record.outputPreview) {
    const auto kept = firstCharacters(*record.outputPreview, settings.outputPreviewMaxCharacters);
    record.outputPreview->resize(kept.size());
  }
}

void removeWithTarget(FileSystem& files, const std::filesystem::path& file) {
  if (const auto target = files.linkTarget(file)) files.remove(*target);
  files.remove(file);
}

}  // namespace

HistoryStore::HistoryStore(FileSystem& files, std::filesystem::path file, Log log)
    : files_(files), file_(std::move(file)), log_(std::move(log)) {}

std::vector<MCPRequestRecord> HistoryStore::load() {
  const MutexLock lock(mutex_);
  fileIsUnreadable_ = false;
  if (!files_.exists(file_)) return {};
  fileIsUnreadable_ = true;
  auto document = [&] {
    try {
      return decodeJson<HistoryDocument>(files_.read(file_), JsonFormat::store);
    } catch (const std::exception& error) {
      throw failed(StorageFailure::historyUnreadable, error.what());
    }
  }();
  if (document.schemaVersion != historySchema)
    throw failed(StorageFailure::historySchema, "schema " + std::to_string(document.schemaVersion));
  fileIsUnreadable_ = false;
  return std::move(document.records);
}

void HistoryStore::save(std::vector<MCPRequestRecord> records, const PrivacyRetentionSettings& settings) {
  if (!settings.persistentHistoryEnabled) return delete_();
  const MutexLock lock(mutex_);
  try {
    for (auto& record : records) removeWhatMayNotBeStored(record, settings);
    write(records);
  } catch (const std::exception& error) {
    throw failed(StorageFailure::historyUnsaved, error.what());
  }
  try {
    files_.setMode(file_, S_IRUSR | S_IWUSR);
  } catch (const std::system_error& error) {
    throw failed(StorageFailure::historyPermissions, error.what());
  }
}

void HistoryStore::forgetUnreadable(const std::optional<Date>& then) noexcept {
  const MutexLock lock(mutex_);
  const auto place = placeOfUnreadable(file_);
  try {
    const auto written = files_.lastWritten(place);
    if (written && (!then || Date::fromUnixSeconds(*written) < *then)) removeWithTarget(files_, place);
  } catch (const std::exception& error) {
    log_.warning("history", place.string() + " could not be deleted: " + error.what());
  }
}

void HistoryStore::write(const std::vector<MCPRequestRecord>& records) {
  ensureDirectory(files_, file_.parent_path());
  StagedFile staged(files_, file_, encodeJson(HistoryDocument{.records = records}, JsonFormat::store));
  if (fileIsUnreadable_ && files_.exists(file_)) files_.rename(file_, placeOfUnreadable(file_));
  const auto target = fileIsUnreadable_ ? std::nullopt : files_.linkTarget(file_);
  fileIsUnreadable_ = false;
  if (const auto doubt = staged.commit())
    log_.warning("history",
                 file_.string() + " was saved and may be lost in a power failure: " + doubt.message());
  try {
    if (target) files_.remove(*target);
  } catch (const std::system_error& error) {
    log_.warning("history", std::string("an older history stays where a link led: ") + error.what());
  }
}

void HistoryStore::delete_() {
  const MutexLock lock(mutex_);
  try {
    delete_(files_, file_);
  } catch (const StructuredError& error) {
    log_.warning("history", file_.string() + ": " + error.message);
    throw;
  }
  fileIsUnreadable_ = false;
}

void HistoryStore::delete_(FileSystem& files, const std::filesystem::path& file) {
  try {
    for (const auto& path : {file, placeOfUnreadable(file)}) {
      if (files.exists(path)) removeWithTarget(files, path);
    }
    StagedFile::removeLeftovers(files, file);
  } catch (const std::system_error&) {
    throw storageError(StorageFailure::historyUndeleted);
  }
}

StructuredError HistoryStore::failed(StorageFailure failure, const std::string& cause) const {
  auto error = storageError(failure);
  log_.warning("history", file_.string() + ": " + error.message + " (" + cause + ")");
  return error;
}

}  // namespace velmora
