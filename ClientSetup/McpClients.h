// The MCP clients and the text that connects each: the one source for what the helper prints and the
// application shows.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velmora {

/// The name under which clients know the server. Tools reach the model with this in front.
inline constexpr std::string_view mcpServerName = "terminal";

/// What a snippet is written in.
enum class SnippetLanguage { json, toml, shell };

struct McpClient {
  std::string_view id;    ///< What the user types: lower case and hyphens.
  std::string_view name;  ///< As the maker writes it.
  SnippetLanguage language;
  std::string_view place;                             ///< A sentence that says what to do with the snippet.
  std::string (*makeSnippet)(std::string_view path);  ///< Called through `snippetFor`.
};

/// Every known client, the more common first. Any thread.
std::span<const McpClient> mcpClients();

/// The client with this id, or nothing.
const McpClient* findMcpClient(std::string_view id);

/// What makes `client` launch the helper at `helperPath`, an absolute path. Without a newline at its end.
/// Throws std::invalid_argument for a path that is not UTF-8, which no client's configuration can hold.
std::string snippetFor(const McpClient& client, std::string_view helperPath);

}  // namespace velmora
