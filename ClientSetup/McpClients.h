// The MCP clients and the text that connects each: the one source for what the helper prints and the
// application shows.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "BridgeModels/JSONValue.h"
#include "BridgeModels/ToolForm.h"

namespace velmora {

/// The name under which clients know the server. Tools reach the model with this in front.
inline constexpr std::string_view mcpServerName = "terminal";

/// What a snippet is written in.
enum class SnippetLanguage { json, toml, shell };

/// What a client is to launch, and what it is to call it.
struct ServerLaunch {
  std::string command;  ///< A program; for this machine its absolute path.
  std::vector<std::string> arguments{};
  std::string name{mcpServerName};
};

/// The helper of this machine.
ServerLaunch localHelper(std::string_view path, ToolForm form = ToolForm::plain);

/// The helper of another machine, over OpenSSH, under a name of that machine's own. `host` is a name, an
/// address or user@host. It must not begin with a hyphen. No password can be typed there, and a broken line
/// is noticed.
ServerLaunch helperOver(const std::string& host, ToolForm form = ToolForm::plain);

struct McpClient {
  std::string_view id;    ///< What the user types: lower case and hyphens.
  std::string_view name;  ///< As the maker writes it.
  SnippetLanguage language;
  std::string_view place;  ///< A sentence that says what to do with the snippet.
  /// The names that lead to the servers in its configuration; none for a client that has its commands only.
  std::span<const std::string_view> servers{};
  /// What its configuration says of a server. Nothing for a client without `servers`.
  JSONObject (*makeEntry)(const ServerLaunch& server) = nullptr;
  /// The lines for a shell, of a client that has commands; nothing where they cannot tell arguments.
  std::optional<std::string> (*makeCommands)(const ServerLaunch& server) = nullptr;
};

/// Every known client, the more common first. Any thread.
std::span<const McpClient> mcpClients();

/// The client with this id, or nothing.
const McpClient* findMcpClient(std::string_view id);

/// What makes `client` launch the helper at `helperPath`, an absolute path, with the tools in `form`. Without
/// a newline at its end. Throws std::invalid_argument for a path that is not UTF-8, which no client's
/// configuration can hold, and for a form that this snippet cannot ask for.
std::string snippetFor(const McpClient& client, std::string_view helperPath, ToolForm form = ToolForm::plain);
std::string snippetFor(const McpClient& client, const ServerLaunch& server);

}  // namespace velmora
