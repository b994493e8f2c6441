#include "ClientSetup/McpClients.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "BridgeModels/JSONValue.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "ClientSetup/Quoting.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

const std::string serverName(mcpServerName);

std::string text(std::string_view path) { return std::string(path); }

// {"key": {"terminal": server}}
JSONObject serverUnder(std::string_view key, JSONObject server) {
  return {{text(key), JSONObject{{serverName, std::move(server)}}}};
}

std::string pretty(const JSONObject& document) { return encodeJson(document, JsonFormat::store); }

std::string mcpServersJson(std::string_view path) {
  return pretty(serverUnder("mcpServers", {{"command", text(path)}}));
}

std::string vsCodeJson(std::string_view path) {
  return pretty(serverUnder("servers", {{"type", "stdio"}, {"command", text(path)}}));
}

std::string zedJson(std::string_view path) {
  return pretty(serverUnder("context_servers", {{"command", text(path)}, {"args", JSONArray{}}}));
}

std::string openCodeJson(std::string_view path) {
  return pretty(serverUnder("mcp", {{"type", "local"}, {"command", JSONArray{text(path)}}}));
}

std::string openClawJson(std::string_view path) {
  return pretty({{"mcp", serverUnder("servers", {{"command", text(path)}})}});
}

std::string openClawCommands(std::string_view path) {
  return "openclaw mcp add " + serverName + " --command " + shellQuoted(path) + "\nopenclaw mcp doctor " +
         serverName + " --probe";
}

std::string claudeCodeCommand(std::string_view path) {
  return "claude mcp add --scope user " + serverName + " -- " + shellQuoted(path);
}

std::string codexToml(std::string_view path) {
  return "[mcp_servers." + serverName + "]\ncommand = " + tomlQuoted(path);
}

constexpr std::array clients{
    McpClient{.id = "claude-desktop",
              .name = "Claude Desktop",
              .language = SnippetLanguage::json,
              .place =
                  "Put it into claude_desktop_config.json (Settings, Developer, Edit Config) and restart "
                  "Claude Desktop.",
              .makeSnippet = mcpServersJson},
    McpClient{.id = "claude-code",
              .name = "Claude Code",
              .language = SnippetLanguage::shell,
              .place =
                  "Run it once in a shell: it connects all your projects. For one project only, put what "
                  "`velmora config cursor` prints into the project's .mcp.json.",
              .makeSnippet = claudeCodeCommand},
    McpClient{.id = "cursor",
              .name = "Cursor",
              .language = SnippetLanguage::json,
              .place = "Put it into ~/.cursor/mcp.json, or into .cursor/mcp.json of one project.",
              .makeSnippet = mcpServersJson},
    McpClient{.id = "vscode",
              .name = "VS Code",
              .language = SnippetLanguage::json,
              .place = "Put it into your mcp.json (command palette: MCP: Open User Configuration), or into "
                       ".vscode/mcp.json of one project.",
              .makeSnippet = vsCodeJson},
    McpClient{.id = "codex",
              .name = "Codex",
              .language = SnippetLanguage::toml,
              .place = "Add it at the end of ~/.codex/config.toml.",
              .makeSnippet = codexToml},
    McpClient{.id = "gemini-cli",
              .name = "Gemini CLI",
              .language = SnippetLanguage::json,
              .place = "Put it into ~/.gemini/settings.json, or into .gemini/settings.json of one project.",
              .makeSnippet = mcpServersJson},
    McpClient{.id = "zed",
              .name = "Zed",
              .language = SnippetLanguage::json,
              .place = "Put it into settings.json (command palette: zed: open settings file).",
              .makeSnippet = zedJson},
    McpClient{.id = "opencode",
              .name = "opencode",
              .language = SnippetLanguage::json,
              .place = "Put it into ~/.config/opencode/opencode.json, or into opencode.json of one project.",
              .makeSnippet = openCodeJson},
    McpClient{.id = "openclaw",
              .name = "OpenClaw",
              .language = SnippetLanguage::json,
              .place = "Put it into ~/.openclaw/openclaw.json.",
              .makeSnippet = openClawJson},
    McpClient{.id = "openclaw-cli",
              .name = "OpenClaw, by its commands",
              .language = SnippetLanguage::shell,
              .place = "Run both lines in a shell: the first saves the server, the second probes it.",
              .makeSnippet = openClawCommands},
};

}  // namespace

std::span<const McpClient> mcpClients() { return clients; }

const McpClient* findMcpClient(std::string_view id) {
  const auto* const found =
      std::find_if(clients.begin(), clients.end(), [&](const McpClient& client) { return client.id == id; });
  return found == clients.end() ? nullptr : found;
}

std::string snippetFor(const McpClient& client, std::string_view helperPath) {
  if (!isValidUtf8(helperPath)) throw std::invalid_argument("the path is not UTF-8");
  return client.makeSnippet(helperPath);
}

}  // namespace velmora
