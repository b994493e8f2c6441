// What `velmora config --apply` and `--remove` do to one client's configuration.
#pragma once

#include <string>

#include "ClientSetup/ClientEntry.h"
#include "ClientSetup/ClientFile.h"
#include "ClientSetup/ConfigFile.h"
#include "VelmoraHelper/Commands/ConfigCommand.h"

namespace velmora {

/// One change, from looking to telling. For one thread.
class ClientChange {
 public:
  /// Keeps references to `context` and `client`, which must have `servers`.
  ClientChange(const CommandContext& context, const McpClient& client, const ServerLaunch& server,
               ConfigAction action);

  /// Says on `out` what was done and what is left for the user to do. What cannot be done safely is not done;
  /// `err` says why, with the text to put there by hand.
  ExitStatus carryOut() const;

 private:
  /// What is found, and what it takes.
  struct Plan {
    std::optional<JSONObject> entry;
    std::vector<ConfigMember> changes{};
    bool isDone = false;
  };

  Plan planned(const ClientFile& place, const ConfigFile& file) const;
  ExitStatus changeFile(const ClientFile& place) const;
  ExitStatus changeByItsCommand(const ClientFile& place) const;
  std::vector<std::vector<std::string>> itsCommands(const Plan& plan) const;
  ExitStatus nothingToDo(const ConfigFile& file, const Plan& plan) const;
  void tellDone(const ConfigFile& file, const Plan& plan,
                const std::optional<std::filesystem::path>& copy) const;
  ExitStatus refuse(const std::string& reason) const;
  std::string title() const;

  const CommandContext& context_;
  const McpClient& client_;
  ServerLaunch server_;
  ConfigAction action_;
  ConfigPath path_;
};

}  // namespace velmora
