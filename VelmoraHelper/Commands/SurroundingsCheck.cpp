#include "VelmoraHelper/Commands/SurroundingsCheck.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>

#include "ClientSetup/ClientEntry.h"
#include "ClientSetup/ClientFile.h"
#include "ClientSetup/ConfigFile.h"
#include "System/FindProgram.h"
#include "System/PrivateFolder.h"

namespace velmora {

namespace {

constexpr std::uintmax_t leastRoom = std::uintmax_t{1} << 20;

void checkDisk(std::vector<Check>& checks, const CommandContext& context) {
  if (!context.roomAt || context.settings.empty()) return;
  const auto folder = context.settings.parent_path();
  const auto room = context.roomAt(folder);
  if (!room || *room >= leastRoom) return;
  checks.push_back(Check::failed(
      "disk", "the disk of " + folder.string() + " is full: " + std::to_string(*room / 1024) + " KB are left",
      "Free some space there: commands are delivered, but neither their records nor settings can be saved."));
}

void checkRuntimeFolder(std::vector<Check>& checks, const Environment& environment) {
  const std::filesystem::path folder = environmentValue(environment, "XDG_RUNTIME_DIR");
  if (folder.empty() || isOwnDirectory(folder)) return;
  std::error_code none;
  const auto* const reason = !folder.is_absolute()                    ? "is no absolute path"
                             : !std::filesystem::exists(folder, none) ? "is not there"
                                                                      : "is no folder of yours";
  checks.push_back(
      Check::passed("runtime folder", "XDG_RUNTIME_DIR is passed over: " + folder.string() + " " + reason));
}

void checkLocale(std::vector<Check>& checks, const Environment& environment) {
  for (const auto* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const auto value = environmentValue(environment, variable);
    if (value.empty()) continue;
    std::string plain;
    for (const char c : value) {
      if (c != '-') plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    if (plain.find("utf8") == std::string::npos) {
      checks.push_back(Check::passed("locale", std::string(variable) + "=" + value +
                                                   " is not UTF-8: tmux may show you _ for other letters; "
                                                   "agents read them all the same"));
    }
    return;
  }
}

// What is wrong with the program that an entry launches; empty when nothing is.
std::string problemOf(const std::vector<std::string>& words, const Environment& environment) {
  if (words.empty()) return "names no program";
  const auto& program = words.front();
  const auto found = findProgram(program, environment);
  if (!found) return "launches " + program + ", which is not there";
  const auto name = found->filename();
  if (name == "velmora-headless" || name == "velmora-app")
    return "launches " + program + ", which is the bridge and not the helper";
  return {};
}

std::optional<Check> checkClient(const CommandContext& context, const McpClient& client) {
  const auto place = clientFile(client, context.environment, *context.files);
  if (!place || !context.files->exists(place->path)) return std::nullopt;
  const auto name = "client " + std::string(client.id);
  const auto file = place->path.string();
  try {
    const auto entry = readEntry(place->language, context.files->read(place->path),
                                 entryPath(client, localHelper(context.program.string())));
    if (!entry) return std::nullopt;
    const auto words = launchedWords(*entry);
    const auto problem = problemOf(words, context.environment);
    if (problem.empty()) return Check::passed(name, file + " launches " + words.front());
    const auto repair = launchesVelmora(*entry)
                            ? "Run: velmora config --apply " + std::string(client.id)
                            : "Correct the entry \"" + std::string(mcpServerName) + "\"; `velmora config " +
                                  std::string(client.id) + "` prints it.";
    return Check::failed(name, file + " " + problem, repair);
  } catch (const ConfigTextError& error) {
    return Check::failed(name, file + " " + error.what(), "Correct the file; the client reads it, too.");
  } catch (const std::system_error& error) {
    return Check::failed(name, file + " cannot be read: " + error.code().message(),
                         "Make it readable for yourself.");
  }
}

std::string processWords(const RunningProcess& process, pid_t id) {
  return (process.name.empty() ? "Velmora" : process.name) + ", process " + std::to_string(id);
}

}  // namespace

std::vector<Check> checkSurroundings(const CommandContext& context) {
  std::vector<Check> checks;
  checkDisk(checks, context);
  if (auto user = checkUser(::geteuid(), context.environment)) checks.push_back(*std::move(user));
  checkRuntimeFolder(checks, context.environment);
  checkLocale(checks, context.environment);
  return checks;
}

std::optional<Check> checkUser(uid_t user, const Environment& environment) {
  const auto caller = environmentValue(environment, "SUDO_UID");
  if (user != 0 || caller.empty() || caller == "0") return std::nullopt;
  return Check::failed("user", "you are root by sudo; your Velmora runs as user " + caller,
                       "Run it without sudo.");
}

std::vector<Check> checkClients(const CommandContext& context) {
  std::vector<Check> checks;
  for (const auto& client : mcpClients()) {
    if (client.servers.empty()) continue;
    if (auto check = checkClient(context, client)) checks.push_back(*std::move(check));
  }
  return checks;
}

std::vector<Check> checkProcess(const CommandContext& context) {
  const auto id = context.bridgeProcess ? context.bridgeProcess() : std::nullopt;
  const auto process = id ? context.processNamed(*id) : std::nullopt;
  if (!process) return {};
  const auto words = processWords(*process, *id);
  if (!process->isReplaced) return {Check::passed("process", words)};
  return {Check::failed("process", words + ", runs a program that was replaced or removed since it started",
                        "Restart Velmora (or velmora-headless).")};
}

std::string stepsForHangingBridge(const CommandContext& context) {
  const auto id = context.bridgeProcess ? context.bridgeProcess() : std::nullopt;
  if (!id) return "Restart Velmora (or velmora-headless).";
  const auto number = std::to_string(*id);
  const auto process = context.processNamed(*id);
  if (process && process->isStopped)
    return "Process " + number + " is stopped; let it go on: kill -CONT " + number;
  return "End process " + number + " (kill " + number + ", or kill -KILL " + number +
         " when that does nothing), then start Velmora again.";
}

}  // namespace velmora
