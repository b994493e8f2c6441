// history.json may hold anything: what cannot be read is kept aside, what can be read survives being saved,
// and nothing that the settings forbid is in the file afterwards.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include "BridgeCore/HistoryStore/HistoryStore.h"
#include "fuzzers/MemoryFileSystem.h"

namespace {

using namespace velmora;
using Records = std::vector<MCPRequestRecord>;

const std::filesystem::path file = "/history.json";

std::optional<Records> loaded(HistoryStore& store) {
  try {
    return store.load();
  } catch (const StructuredError&) {
    return std::nullopt;
  }
}

// A date that the time zone in its text moves out of the years 0 to 9999 can be read and not written.
bool saves(HistoryStore& store, const Records& records, const PrivacyRetentionSettings& settings) {
  try {
    store.save(records, settings);
    return true;
  } catch (const StructuredError&) {
    return false;
  }
}

bool holdsForbidden(const MCPRequestRecord& record) {
  return record.commandBody || record.commandSummary || record.outputPreview;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const PrivacyRetentionSettings nothing{.persistentHistoryEnabled = true};
  auto everything = nothing;
  everything.storeCommandBody = everything.storeOutputPreview = true;

  MemoryFileSystem files;
  files.create(file, bytes);
  HistoryStore store(files, file);
  const auto records = loaded(store);
  if (files.read(file) != bytes) std::abort();
  if (!records) {
    if (!saves(store, {}, everything)) std::abort();
    if (files.read(placeOfUnreadable(file)) != bytes) std::abort();
    return 0;
  }

  // The file has whole seconds, so the first save may round; after that nothing changes any more.
  if (!saves(store, *records, everything)) return 0;
  const auto written = files.read(file);
  const auto again = loaded(store);
  if (!again || again->size() != records->size()) std::abort();
  if (!saves(store, *again, everything) || files.read(file) != written) std::abort();

  if (!saves(store, *again, nothing)) std::abort();
  const auto stripped = loaded(store);
  if (!stripped || std::any_of(stripped->begin(), stripped->end(), holdsForbidden)) std::abort();
  return 0;
}
