#include "VelmoraApp/Settings/MCPConnectionViewModel.h"

#include <vector>

#include "ClientSetup/McpClients.h"
#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

// OpenClaw has its own place on the page.
std::vector<const McpClient*> furtherClients() {
  std::vector<const McpClient*> clients;
  for (const auto& client : mcpClients()) {
    if (!client.id.starts_with("openclaw")) clients.push_back(&client);
  }
  return clients;
}

const McpClient& furtherClient(int index) { return *furtherClients()[static_cast<std::size_t>(index)]; }

}  // namespace

QString MCPConnectionViewModel::caption() const {
  return context_.terminal == GuidedTerminal::tmux
             ? "This configuration names the helper of the Velmora that is running now. No URL, port, or network authentication is used."
             : "This configuration assumes Velmora.app is installed in /Applications. No URL, port, or network authentication is used.";
}

QString MCPConnectionViewModel::helperPath() const { return text(connection_.helperPath); }

QString MCPConnectionViewModel::configuration() const { return text(connection_.configuration()); }

QString MCPConnectionViewModel::openClawConfiguration() const {
  return text(connection_.openClawConfiguration());
}

QString MCPConnectionViewModel::openClawCommands() const { return text(connection_.openClawCommands()); }

QStringList MCPConnectionViewModel::clientNames() const {
  QStringList names;
  for (const auto* client : furtherClients()) names.append(text(client->name));
  return names;
}

void MCPConnectionViewModel::setClientIndex(int index) {
  if (index == clientIndex_ || index < 0 || index >= static_cast<int>(furtherClients().size())) return;
  clientIndex_ = index;
  Q_EMIT clientChanged();
}

QString MCPConnectionViewModel::clientPlace() const { return text(furtherClient(clientIndex_).place); }

QString MCPConnectionViewModel::clientSnippet() const {
  return text(snippetFor(furtherClient(clientIndex_), connection_.helperPath));
}

}  // namespace velmora
