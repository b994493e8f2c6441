// A file of its own although short: each system has its adapter.
#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"
#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeHost/PlatformTerminal.h"
#include "BridgeModels/StructuredError.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"

namespace velmora {

namespace {

// The server is chosen once, before the settings are loaded for everything else. What cannot be read is told
// then.
std::optional<std::filesystem::path> chosenSocket(const Environment& environment, const Log& log) {
  PosixFileSystem files;
  std::filesystem::path chosen;
  try {
    chosen = PrivacySettingsStore(files, defaultSettingsFile(environment), {}).load().tmuxSocket.value_or("");
  } catch (const StructuredError&) {
    return std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;
  }
  if (chosen.is_absolute()) return chosen;
  if (!chosen.empty())
    log.warning("settings", "tmuxSocket is no absolute path, so the usual tmux server is used.");
  return std::nullopt;
}

}  // namespace

std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory,
                                                         const Log& log) {
  std::vector<std::filesystem::path> ownFolders{defaultSettingsFile(environment).parent_path()};
  for (const auto& place : UnixSocketEndpoint::places(environment)) ownFolders.push_back(place.parent_path());
  if (auto folder = UnixSocketEndpoint::canonicalUserTemporaryDirectory(environment))
    ownFolders.push_back(*std::move(folder));
  return makeTmuxTerminal(
      {.environment = environment,
       .socketPath = chosenSocket(environment, log),
       .log = log,
       .temporaryDirectory = temporaryDirectory,
       .runtimeFolder =
           [environment] { return UnixSocketEndpoint::defaultURL(environment).parent_path().parent_path(); },
       .ownFolders = std::move(ownFolders)});
}

}  // namespace velmora
