// What connects an MCP client to this application: the helper's path, and the snippets that name it.
#pragma once

#include <string>

#include "BridgeModels/ToolForm.h"

namespace velmora {

/// Any thread.
struct MCPConnectionConfiguration {
  /// The helper's absolute path, in UTF-8.
  std::string helperPath;
  ToolForm form = ToolForm::plain;

  /// {"mcpServers": {"terminal": {"command": helperPath}}}
  std::string configuration() const;
  /// {"mcp": {"servers": {"terminal": {"command": helperPath}}}}
  std::string openClawConfiguration() const;
  /// Two lines for a shell: one saves the server, one probes it. Empty for the extended form, which they
  /// cannot ask for.
  std::string openClawCommands() const;
};

}  // namespace velmora
