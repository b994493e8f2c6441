// What connects an MCP client to this application: the helper's path, and the snippets that name it.
#pragma once

#include <string>

namespace velmora {

/// Any thread.
struct MCPConnectionConfiguration {
  /// The helper's absolute path, in UTF-8.
  std::string helperPath;

  /// {"mcpServers": {"terminal": {"command": helperPath}}}
  std::string configuration() const;
  /// {"mcp": {"servers": {"terminal": {"command": helperPath}}}}
  std::string openClawConfiguration() const;
  /// Two lines for a shell: one saves the server, one probes it.
  std::string openClawCommands() const;
};

}  // namespace velmora
