#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"

#include <sys/stat.h>

#include <boost/mp11/algorithm.hpp>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <vector>

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "System/StagedFile.h"

namespace velmora {

namespace {

constexpr std::int64_t privacySchema = 1;

struct SettingsDocument {
  std::int64_t schemaVersion = privacySchema;
  PrivacyRetentionSettings settings{};
};
BOOST_DESCRIBE_STRUCT(SettingsDocument, (), (schemaVersion, settings))

// Keys that no setting has, and numbers that count as others.
std::vector<std::string> oddities(std::string_view text, const PrivacyRetentionSettings& stated,
                                  const PrivacyRetentionSettings& held) {
  std::vector<std::string> found;
  std::set<std::string_view> known;
  boost::mp11::mp_for_each<MembersOf<PrivacyRetentionSettings>>([&](auto member) {
    known.insert(member.name);
    if constexpr (std::is_same_v<decltype(member.pointer), std::int64_t PrivacyRetentionSettings::*const>) {
      const auto is = stated.*member.pointer;
      const auto counts = held.*member.pointer;
      if (is != counts)
        found.push_back(std::string(member.name) + " is " + std::to_string(is) + "; " +
                        std::to_string(counts) + " holds");
    }
  });
  const auto document = parseJson(text);
  for (const auto& setting : document.as_object().at("settings").as_object()) {
    const std::string key(setting.key());
    if (!known.contains(key)) found.push_back("no setting is called " + quotedForLog(key));
  }
  return found;
}

}  // namespace

PrivacySettingsStore::PrivacySettingsStore(FileSystem& files, std::filesystem::path file,
                                           const PrivacyRetentionSettings& initial, Log log)
    : files_(files), file_(std::move(file)), log_(std::move(log)), settings_(initial) {}

PrivacyRetentionSettings PrivacySettingsStore::current() const {
  const MutexLock lock(mutex_);
  return settings_;
}

PrivacyRetentionSettings PrivacySettingsStore::load() {
  const MutexLock lock(mutex_);
  fileIsUnreadable_ = false;
  if (!files_.exists(file_)) return settings_;
  fileIsUnreadable_ = true;
  try {
    settings_ = read();
    fileIsUnreadable_ = false;
    return settings_;
  } catch (const StructuredError& error) {
    log_.error("settings", file_.string() + ": " + error.message);
    throw;
  } catch (const std::exception& error) {
    log_.error("settings", file_.string() + ": " + error.what());
    throw;
  }
}

PrivacyRetentionSettings PrivacySettingsStore::read() const {
  const auto text = files_.read(file_);
  const auto document = decodeJson<SettingsDocument>(text, JsonFormat::store);
  if (document.schemaVersion != privacySchema) throw storageError(StorageFailure::settingsSchema);
  auto settings = document.settings;
  settings.normalize();
  for (const auto& oddity : oddities(text, document.settings, settings))
    log_.warning("settings", file_.string() + ": " + oddity);
  return settings;
}

void PrivacySettingsStore::save(PrivacyRetentionSettings settings) {
  settings.normalize();
  const MutexLock lock(mutex_);
  ensureDirectory(files_, file_.parent_path());
  StagedFile staged(files_, file_, encodeJson(SettingsDocument{.settings = settings}, JsonFormat::store));
  if (fileIsUnreadable_ && files_.exists(file_)) files_.rename(file_, placeOfUnreadable(file_));
  fileIsUnreadable_ = false;
  if (const auto doubt = staged.commit())
    log_.warning("settings",
                 file_.string() + " was saved and may be lost in a power failure: " + doubt.message());
  try {
    files_.setMode(file_, S_IRUSR | S_IWUSR);
  } catch (const std::system_error&) {
    throw storageError(StorageFailure::settingsPermissions);
  }
  settings_ = settings;
}

}  // namespace velmora
