#include "ClientSetup/ClientFile.h"

#include "ClientSetup/ApplicationConfig.h"

namespace velmora {

namespace {

using std::filesystem::path;

constexpr std::string_view noVariable{};

path below(const path& folder, const char* name) { return folder.empty() ? path() : folder / name; }

path openCodeFile(const Environment& environment, FileSystem& files) {
  auto home = below(baseDirectory(environment, "XDG_CONFIG_HOME", ".config"), "opencode");
  if (home.empty()) return home;
  auto withComments = home / "opencode.jsonc";
  return files.exists(withComments) ? withComments : home / "opencode.json";
}

path openClawFile(const Environment& environment) {
  const auto named = environmentPath(environment, "OPENCLAW_CONFIG_PATH");
  return named.empty() ? below(baseDirectory(environment, "OPENCLAW_STATE_DIR", ".openclaw"), "openclaw.json")
                       : named;
}

ClientFile placed(std::string_view id, const Environment& environment, FileSystem& files) {
  using enum ConfigLanguage;
  if (id == "claude-desktop") {
    return {below(applicationConfigDirectory(environment), "Claude/claude_desktop_config.json"), json};
  }
  if (id == "claude-code")
    return {below(baseDirectory(environment, "CLAUDE_CONFIG_DIR", ""), ".claude.json"), json};
  if (id == "cursor") return {baseDirectory(environment, noVariable, ".cursor/mcp.json"), jsonWithComments};
  if (id == "vscode") {
    return {below(applicationConfigDirectory(environment), "Code/User/mcp.json"), jsonWithComments};
  }
  if (id == "codex") return {below(baseDirectory(environment, "CODEX_HOME", ".codex"), "config.toml"), toml};
  if (id == "gemini-cli")
    return {baseDirectory(environment, noVariable, ".gemini/settings.json"), jsonWithComments};
  if (id == "zed") {
    return {below(baseDirectory(environment, "XDG_CONFIG_HOME", ".config"), "zed/settings.json"),
            jsonWithComments};
  }
  if (id == "opencode") return {openCodeFile(environment, files), jsonWithComments};
  if (id == "openclaw") return {openClawFile(environment), json5};
  return {};
}

}  // namespace

std::optional<ClientFile> clientFile(const McpClient& client, const Environment& environment,
                                     FileSystem& files) {
  auto file = placed(client.id, environment, files);
  if (file.path.empty()) return std::nullopt;
  return file;
}

}  // namespace velmora
