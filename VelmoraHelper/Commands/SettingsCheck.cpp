#include "VelmoraHelper/Commands/SettingsCheck.h"

#include <boost/mp11/algorithm.hpp>
#include <optional>
#include <string>
#include <system_error>

#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "System/FileSystem.h"
#include "System/Log.h"

namespace velmora {

namespace {

constexpr const char* name = "settings";

std::string policyOf(const PrivacyRetentionSettings& settings) {
  return "session policy " + std::string(wireName(settings.sessionPolicy));
}

std::optional<std::string> unknownKey(const boost::json::value& settings) {
  for (const auto& setting : settings.as_object()) {
    bool known = false;
    boost::mp11::mp_for_each<MembersOf<PrivacyRetentionSettings>>(
        [&](auto member) { known = known || setting.key() == member.name; });
    if (!known) return std::string(setting.key());
  }
  return std::nullopt;
}

}  // namespace

Check checkSettings(const std::filesystem::path& file) {
  constexpr const char* mend = "Mend the file or remove it, then restart Velmora.";
  PosixFileSystem files;
  if (file.empty() || !files.exists(file)) {
    return Check::passed(name, "none stored; " + policyOf(PrivacyRetentionSettings{}));
  }
  try {
    const auto document = parseJson(files.read(file));
    PrivacyRetentionSettings settings;
    JsonReader(document.at("settings")).read(settings);
    if (const auto key = unknownKey(document.at("settings"))) {
      return Check::failed(name,
                           "no setting is called " + quotedForLog(*key) + " in " + file.string() + "; " +
                               policyOf(settings) + " holds",
                           "Correct its name or remove it, then restart Velmora.");
    }
    return Check::passed(name, file.string() + "; " + policyOf(settings));
  } catch (const JsonDecodeError& error) {
    return Check::failed(name, file.string() + ": " + error.what(), mend);
  } catch (const std::exception&) {  // no member "settings", or a file that cannot be read
    return Check::failed(name, file.string() + " cannot be read", mend);
  }
}

}  // namespace velmora
