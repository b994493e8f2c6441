// Apart from the view model: the help shows these texts too.
#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

#include "ClientSetup/McpClients.h"

namespace velmora {

namespace {

std::string snippet(std::string_view client, const MCPConnectionConfiguration& connection) {
  return snippetFor(*findMcpClient(client), connection.helperPath, connection.form);
}

}  // namespace

std::string MCPConnectionConfiguration::configuration() const { return snippet("claude-desktop", *this); }

std::string MCPConnectionConfiguration::openClawConfiguration() const { return snippet("openclaw", *this); }

std::string MCPConnectionConfiguration::openClawCommands() const {
  return form == ToolForm::extended ? std::string() : snippet("openclaw-cli", *this);
}

}  // namespace velmora
