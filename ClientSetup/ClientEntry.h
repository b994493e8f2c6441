// The entry of one server in a client's configuration: what it should say, and what one that is there says.
// Stateless; any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ClientSetup/ConfigText.h"
#include "ClientSetup/McpClients.h"

namespace velmora {

/// Where the entry stands. For a client with `servers`.
ConfigPath entryPath(const McpClient& client, const ServerLaunch& server);

/// What the entry says, the command first.
std::vector<ConfigMember> entryMembers(const McpClient& client, const ServerLaunch& server);

/// The members of `entry` that must be changed so that it launches `server`; none when it does.
std::vector<ConfigMember> neededChanges(const McpClient& client, const ServerLaunch& server,
                                        const JSONObject& entry);

/// The words that the entry launches, the program first; none when it launches no program.
std::vector<std::string> launchedWords(const JSONObject& entry);

/// Whether it launches a program of ours, be it the right one or not, here or over SSH.
bool launchesVelmora(const JSONObject& entry);

}  // namespace velmora
