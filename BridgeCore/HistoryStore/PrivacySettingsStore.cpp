#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"

#include <sys/stat.h>

#include <cstdint>
#include <system_error>

#include "BridgeCore/HistoryStore/EnsureDirectory.h"
#include "BridgeCore/HistoryStore/StorageError.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "System/StagedFile.h"

namespace velmora {

namespace {

constexpr std::int64_t supportedSchema = 1;

struct SettingsDocument {
  std::int64_t schemaVersion = supportedSchema;
  PrivacyRetentionSettings settings{};
};
BOOST_DESCRIBE_STRUCT(SettingsDocument, (), (schemaVersion, settings))

}  // namespace

PrivacySettingsStore::PrivacySettingsStore(FileSystem& files, std::filesystem::path file,
                                           const PrivacyRetentionSettings& initial)
    : files_(files), file_(std::move(file)), settings_(initial) {}

PrivacyRetentionSettings PrivacySettingsStore::current() const {
  const MutexLock lock(mutex_);
  return settings_;
}

PrivacyRetentionSettings PrivacySettingsStore::load() {
  const MutexLock lock(mutex_);
  if (!files_.exists(file_)) return settings_;
  auto document = decodeJson<SettingsDocument>(files_.read(file_), JsonFormat::store);
  if (document.schemaVersion != supportedSchema) throw storageError(StorageFailure::settingsSchema);
  document.settings.normalize();
  settings_ = document.settings;
  return settings_;
}

void PrivacySettingsStore::save(PrivacyRetentionSettings settings) {
  settings.normalize();
  const MutexLock lock(mutex_);
  ensureDirectory(files_, file_.parent_path());
  StagedFile(files_, file_, encodeJson(SettingsDocument{.settings = settings}, JsonFormat::store)).commit();
  try {
    files_.setMode(file_, S_IRUSR | S_IWUSR);
  } catch (const std::system_error&) {
    throw storageError(StorageFailure::settingsPermissions);
  }
  settings_ = settings;
}

}  // namespace velmora
