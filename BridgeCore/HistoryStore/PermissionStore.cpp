#include "BridgeCore/HistoryStore/PermissionStore.h"

#include <cstdint>
#include <stdexcept>

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "System/StagedFile.h"

namespace velmora {

namespace {

constexpr std::int64_t permissionsSchema = 1;

struct PermissionDocument {
  std::int64_t schemaVersion = permissionsSchema;
  std::vector<KeptPermission> sessions{};
};
BOOST_DESCRIBE_STRUCT(PermissionDocument, (), (schemaVersion, sessions))

}  // namespace

std::vector<KeptPermission> PermissionStore::load() {
  const MutexLock lock(mutex_);
  if (!files_.exists(file_)) return {};
  auto document = decodeJson<PermissionDocument>(files_.read(file_), JsonFormat::store);
  if (document.schemaVersion != permissionsSchema)
    throw std::runtime_error("schema " + std::to_string(document.schemaVersion) + " is not supported");
  return std::move(document.sessions);
}

void PermissionStore::save(std::vector<KeptPermission> kept) {
  if (kept.size() > mostKept) kept.erase(kept.begin(), kept.end() - static_cast<std::ptrdiff_t>(mostKept));
  const MutexLock lock(mutex_);
  if (kept.empty()) return files_.remove(file_);
  ensureDirectory(files_, file_.parent_path());
  StagedFile(files_, file_, encodeJson(PermissionDocument{.sessions = std::move(kept)}, JsonFormat::store))
      .commit();
}

}  // namespace velmora
