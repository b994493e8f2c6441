// A client's configuration that users and clients wrote into: whatever it holds, an entry that was put there
// reads as it was meant, also when it is put there twice, and taken out again it is gone. That the rest of
// the text stays is looked at by the edits themselves, which refuse otherwise.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "ClientSetup/ConfigText.h"

namespace {

using namespace velmora;

const ConfigPath path{"mcpServers", "terminal"};
const std::vector<ConfigMember> members{{"command", JSONValue("/usr/bin/velmora")},
                                        {"args", JSONValue(JSONArray{JSONValue("--extended")})}};

void check(ConfigLanguage language, std::string_view text) {
  try {
    static_cast<void>(readEntry(language, text, path));
    const auto with = withEntry(language, text, path, members);
    const auto entry = readEntry(language, with, path);
    if (!entry) std::abort();
    for (const auto& [key, value] : members) {
      if (entry->at(key) != *value) std::abort();
    }
    if (readEntry(language, withEntry(language, with, path, members), path) != entry) std::abort();
    if (readEntry(language, withoutEntry(language, with, path), path)) std::abort();
  } catch (const ConfigTextError&) {
    // It says what it cannot read or change.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto language :
       {ConfigLanguage::json, ConfigLanguage::jsonWithComments, ConfigLanguage::json5, ConfigLanguage::toml})
    check(language, text);
  return 0;
}
