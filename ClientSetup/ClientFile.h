// The file in which a client keeps its servers, for all of the user's projects.
#pragma once

#include <filesystem>
#include <optional>

#include "ClientSetup/ConfigText.h"
#include "ClientSetup/McpClients.h"
#include "System/Environment.h"
#include "System/FileSystem.h"

namespace velmora {

struct ClientFile {
  std::filesystem::path path;
  ConfigLanguage language = ConfigLanguage::json;
};

/// Where the client looks for it by its documentation; of two names the one that is there. Nothing for a
/// client without a file, and when the environment names no home. Any thread.
std::optional<ClientFile> clientFile(const McpClient& client, const Environment& environment,
                                     FileSystem& files);

}  // namespace velmora
