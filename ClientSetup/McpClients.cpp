#include "ClientSetup/McpClients.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "BridgeModels/JSONValue.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "ClientSetup/ClientEntry.h"
#include "ClientSetup/Quoting.h"
#include "ClientSetup/TomlEdit.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

JSONArray argumentsOf(const ServerLaunch& server) {
  return {server.arguments.begin(), server.arguments.end()};
}

// {"command": path}, with "args" when there are any.
JSONObject commandObject(const ServerLaunch& server) {
  JSONObject object{{"command", server.command}};
  if (!server.arguments.empty()) object["args"] = argumentsOf(server);
  return object;
}

std::string shellCommand(const ServerLaunch& server) {
  auto line = shellQuoted(server.command);
  for (const auto& argument : server.arguments) line += " " + shellWord(argument);
  return line;
}

JSONObject vsCodeEntry(const ServerLaunch& server) {
  auto object = commandObject(server);
  object["type"] = "stdio";
  return object;
}

JSONObject zedEntry(const ServerLaunch& server) {
  return {{"command", server.command}, {"args", argumentsOf(server)}};
}

JSONObject openCodeEntry(const ServerLaunch& server) {
  auto command = argumentsOf(server);
  command.insert(command.begin(), server.command);
  return {{"type", "local"}, {"command", std::move(command)}};
}

using Snippet = std::optional<std::string>;

// Its command takes a program without arguments.
Snippet openClawCommands(const ServerLaunch& server) {
  if (!server.arguments.empty()) return std::nullopt;
  return "openclaw mcp add " + server.name + " --command " + shellQuoted(server.command) +
         "\nopenclaw mcp doctor " + server.name + " --probe";
}

Snippet claudeCodeCommand(const ServerLaunch& server) {
  return "claude mcp add --scope user " + server.name + " -- " + shellCommand(server);
}

constexpr std::array<std::string_view, 1> mcpServers{"mcpServers"};
constexpr std::array<std::string_view, 1> vsCodeServers{"servers"};
constexpr std::array<std::string_view, 1> codexServers{"mcp_servers"};
constexpr std::array<std::string_view, 1> zedServers{"context_servers"};
constexpr std::array<std::string_view, 1> openCodeServers{"mcp"};
constexpr std::array<std::string_view, 2> openClawServers{"mcp", "servers"};

constexpr std::array clients{
    McpClient{.id = "claude-desktop",
              .name = "Claude Desktop",
              .language = SnippetLanguage::json,
              .place =
                  "Put it into claude_desktop_config.json (Settings, Developer, Edit Config) and restart "
                  "Claude Desktop.",
              .servers = mcpServers,
              .makeEntry = commandObject},
    McpClient{.id = "claude-code",
              .name = "Claude Code",
              .language = SnippetLanguage::shell,
              .place =
                  "Run it once in a shell: it connects all your projects. For one project only, put what "
                  "`velmora config cursor` prints into the project's .mcp.json.",
              .servers = mcpServers,
              .makeEntry = commandObject,
              .makeCommands = claudeCodeCommand},
    McpClient{.id = "cursor",
              .name = "Cursor",
              .language = SnippetLanguage::json,
              .place = "Put it into ~/.cursor/mcp.json, or into .cursor/mcp.json of one project.",
              .servers = mcpServers,
              .makeEntry = commandObject},
    McpClient{.id = "vscode",
              .name = "VS Code",
              .language = SnippetLanguage::json,
              .place = "Put it into your mcp.json (command palette: MCP: Open User Configuration), or into "
                       ".vscode/mcp.json of one project.",
              .servers = vsCodeServers,
              .makeEntry = vsCodeEntry},
    McpClient{.id = "codex",
              .name = "Codex",
              .language = SnippetLanguage::toml,
              .place = "Add it at the end of ~/.codex/config.toml.",
              .servers = codexServers,
              .makeEntry = commandObject},
    McpClient{.id = "gemini-cli",
              .name = "Gemini CLI",
              .language = SnippetLanguage::json,
              .place = "Put it into ~/.gemini/settings.json, or into .gemini/settings.json of one project.",
              .servers = mcpServers,
              .makeEntry = commandObject},
    McpClient{.id = "zed",
              .name = "Zed",
              .language = SnippetLanguage::json,
              .place = "Put it into settings.json (command palette: zed: open settings file).",
              .servers = zedServers,
              .makeEntry = zedEntry},
    McpClient{.id = "opencode",
              .name = "opencode",
              .language = SnippetLanguage::json,
              .place = "Put it into ~/.config/opencode/opencode.json, or into opencode.json of one project.",
              .servers = openCodeServers,
              .makeEntry = openCodeEntry},
    McpClient{.id = "openclaw",
              .name = "OpenClaw",
              .language = SnippetLanguage::json,
              .place = "Put it into ~/.openclaw/openclaw.json.",
              .servers = openClawServers,
              .makeEntry = commandObject},
    McpClient{.id = "openclaw-cli",
              .name = "OpenClaw, by its commands",
              .language = SnippetLanguage::shell,
              .place = "Run both lines in a shell: the first saves the server, the second probes it.",
              .makeCommands = openClawCommands},
};

}  // namespace

std::span<const McpClient> mcpClients() { return clients; }

const McpClient* findMcpClient(std::string_view id) {
  const auto* const found =
      std::find_if(clients.begin(), clients.end(), [&](const McpClient& client) { return client.id == id; });
  return found == clients.end() ? nullptr : found;
}

ServerLaunch localHelper(std::string_view path, ToolForm form) {
  ServerLaunch server{.command = std::string(path)};
  if (form == ToolForm::extended) server.arguments.emplace_back(extendedOption);
  return server;
}

ServerLaunch helperOver(const std::string& host, ToolForm form) {
  ServerLaunch server{
      .command = "ssh",
      .arguments = {"-T", "-o", "BatchMode=yes", "-o", "ServerAliveInterval=15", host, "velmora"},
      .name = std::string(mcpServerName) + "-"};
  for (const char c : host.substr(host.find('@') + 1)) {
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    server.name += isPlain ? c : '-';
  }
  if (form == ToolForm::extended) server.arguments.emplace_back(extendedOption);
  return server;
}

std::string snippetFor(const McpClient& client, std::string_view helperPath, ToolForm form) {
  return snippetFor(client, localHelper(helperPath, form));
}

std::string snippetFor(const McpClient& client, const ServerLaunch& server) {
  for (const auto& argument : server.arguments) {
    if (!isValidUtf8(argument)) throw std::invalid_argument("an argument is not UTF-8");
  }
  if (!isValidUtf8(server.command)) throw std::invalid_argument("the path is not UTF-8");
  if (client.language == SnippetLanguage::toml)
    return tomlTable(entryPath(client, server), entryMembers(client, server));
  if (client.language == SnippetLanguage::json) {
    JSONValue document = client.makeEntry(server);
    const auto path = entryPath(client, server);
    for (auto name = path.rbegin(); name != path.rend(); ++name)
      document = JSONObject{{*name, std::move(document)}};
    return encodeJson(document, JsonFormat::store);
  }
  auto commands = client.makeCommands(server);
  if (!commands) throw std::invalid_argument("the snippet cannot hold arguments");
  return *std::move(commands);
}

}  // namespace velmora
