// settings.json may hold anything: it is refused and stays, or it is read, and what is saved then reads the
// same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/StructuredError.h"
#include "fuzzers/MemoryFileSystem.h"

namespace {

using namespace velmora;

const std::filesystem::path file = "/settings.json";

bool loads(PrivacySettingsStore& store) {
  try {
    store.load();
    return true;
  } catch (const JsonDecodeError&) {
    return false;
  } catch (const StructuredError&) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  MemoryFileSystem files;
  files.create(file, bytes);
  PrivacySettingsStore store(files, file, {});
  const bool loaded = loads(store);
  // Reading changes nothing on the disk, and what cannot be read changes nothing in memory.
  if (files.read(file) != bytes) std::abort();
  if (!loaded && store.current() != PrivacyRetentionSettings{}) std::abort();
  if (!loaded) return 0;

  const auto settings = store.current();
  auto inRange = settings;
  inRange.normalize();
  if (inRange != settings) std::abort();
  store.save(settings);
  PrivacySettingsStore again(files, file, {});
  if (!loads(again) || again.current() != settings) std::abort();
  return 0;
}
