#include "VelmoraApp/Settings/MCPConnectionViewModel.h"

#include <vector>

#include "ClientSetup/McpClients.h"
#include "VelmoraApp/AppModel/BridgeTexts.h"
#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

// Those that a text is put into, which every form of the tools can ask for; not the commands of OpenClaw's.
std::vector<const McpClient*> listedClients() {
  std::vector<const McpClient*> clients;
  for (const auto& client : mcpClients()) {
    if (client.id != "openclaw-cli") clients.push_back(&client);
  }
  return clients;
}

const McpClient& listedClient(int index) { return *listedClients()[static_cast<std::size_t>(index)]; }

}  // namespace

QString MCPConnectionViewModel::caption() const {
  return context_.terminal == GuidedTerminal::tmux
             ? tr("This configuration names the helper of the Velmora that is running now. No URL, port, or network authentication is used.")
             : tr("This configuration assumes Velmora.app is installed in /Applications. No URL, port, or network authentication is used.");
}

QString MCPConnectionViewModel::helperPath() const { return text(connection_.helperPath); }

void MCPConnectionViewModel::setExtended(bool extended) {
  if (extended == this->extended()) return;
  connection_.form = extended ? ToolForm::extended : ToolForm::plain;
  Q_EMIT formChanged();
  Q_EMIT clientChanged();
}

QString MCPConnectionViewModel::configuration() const { return text(connection_.configuration()); }

QString MCPConnectionViewModel::openClawConfiguration() const {
  return text(connection_.openClawConfiguration());
}

QString MCPConnectionViewModel::openClawCommands() const { return text(connection_.openClawCommands()); }

QStringList MCPConnectionViewModel::clientNames() const {
  QStringList names;
  for (const auto* client : listedClients()) names.append(text(client->name));
  return names;
}

void MCPConnectionViewModel::setClientIndex(int index) {
  if (index == clientIndex_ || index < 0 || index >= static_cast<int>(listedClients().size())) return;
  clientIndex_ = index;
  Q_EMIT clientChanged();
}

QString MCPConnectionViewModel::clientPlace() const { return bridgeText(listedClient(clientIndex_).place); }

QString MCPConnectionViewModel::clientSnippet() const {
  return text(snippetFor(listedClient(clientIndex_), connection_.helperPath, connection_.form));
}

}  // namespace velmora
