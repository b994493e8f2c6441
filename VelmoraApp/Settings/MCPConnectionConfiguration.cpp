#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

#include "ClientSetup/McpClients.h"

namespace velmora {

namespace {

std::string snippet(std::string_view client, const std::string& helperPath) {
  return snippetFor(*findMcpClient(client), helperPath);
}

}  // namespace

std::string MCPConnectionConfiguration::configuration() const {
  return snippet("claude-desktop", helperPath);
}

std::string MCPConnectionConfiguration::openClawConfiguration() const {
  return snippet("openclaw", helperPath);
}

std::string MCPConnectionConfiguration::openClawCommands() const {
  return snippet("openclaw-cli", helperPath);
}

}  // namespace velmora
