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
  std::string words = "session policy " + std::string(wireName(settings.sessionPolicy));
  if (settings.allowBusySessionInput) {
    words += ", busy input on";
  } else if (settings.allowOwnBusySessionInput.value_or(false)) {
    words += ", busy input in agents' windows";
  }
  if (settings.containNewWindows.value_or(false)) words += ", new windows in bubblewrap";
  if (const auto socket = settings.tmuxSocket.value_or(""); !socket.empty())
    words += ", tmux socket " + socket;
  return words;
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

PrivacyRetentionSettings readableSettings(const std::filesystem::path& file) {
  PrivacyRetentionSettings settings;
  try {
    const auto document = parseJson(PosixFileSystem().read(file));
    JsonReader(document.at("settings")).read(settings);
    settings.normalize();
    return settings;
  } catch (const std::exception&) {  // the check of the settings says what is wrong
    return {};
  }
}

}  // namespace

Check checkLimits(const std::filesystem::path& file) {
  const auto settings = readableSettings(file);
  std::string words = settings.sessionPolicy == SessionPolicy::safe
                          ? "agents may type into every session"
                          : "agents may type into windows that they opened, and read the others";
  words += settings.allowBusySessionInput                      ? ", busy ones too"
           : settings.allowOwnBusySessionInput.value_or(false) ? ", busy ones only if an agent opened them"
                                                               : ", but not into busy ones";
  if (!settings.persistentHistoryEnabled) return Check::passed("limits", words + "; no history is kept");
  words += "; history is kept for " + std::to_string(settings.retentionDays) +
           (settings.retentionDays == 1 ? " day" : " days");
  return Check::passed("limits", settings.deleteOnAppExit ? words + ", and until the bridge ends" : words);
}

Check checkSettings(const std::filesystem::path& file) {
  constexpr const char* repair = "Correct the file or remove it, then restart Velmora.";
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
    if (const auto socket = settings.tmuxSocket.value_or(""); !socket.empty() && !socket.starts_with('/')) {
      return Check::failed(name, "tmuxSocket in " + file.string() + " is no absolute path",
                           "Name the socket from / on, then restart Velmora.");
    }
    return Check::passed(name, file.string() + "; " + policyOf(settings));
  } catch (const JsonDecodeError& error) {
    return Check::failed(name, file.string() + ": " + error.what(), repair);
  } catch (const std::exception&) {  // no member "settings", or a file that cannot be read
    return Check::failed(name, file.string() + " cannot be read", repair);
  }
}

}  // namespace velmora
