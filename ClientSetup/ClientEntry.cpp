#include "ClientSetup/ClientEntry.h"

#include <algorithm>
#include <filesystem>

namespace velmora {

namespace {

const JSONValue* member(const JSONObject& entry, std::string_view key) {
  const auto found = entry.find(key);
  return found == entry.end() ? nullptr : &found->second;
}

bool isEmptyList(const JSONValue& value) { return value.array() != nullptr && value.array()->empty(); }

// No list of arguments and an empty one are the same to every client.
bool saysTheSame(const JSONValue* found, const JSONValue& wanted) {
  return found == nullptr ? isEmptyList(wanted) : *found == wanted;
}

void appendTexts(std::vector<std::string>& words, const JSONValue* list) {
  if (list == nullptr || list->array() == nullptr) return;
  for (const auto& element : *list->array()) {
    if (const auto* const text = element.string()) words.push_back(*text);
  }
}

bool isOurProgram(const std::string& word) {
  return std::filesystem::path(word).filename().string().starts_with("velmora");
}

}  // namespace

ConfigPath entryPath(const McpClient& client, const ServerLaunch& server) {
  ConfigPath path(client.servers.begin(), client.servers.end());
  path.push_back(server.name);
  return path;
}

std::vector<ConfigMember> entryMembers(const McpClient& client, const ServerLaunch& server) {
  std::vector<ConfigMember> members;
  for (auto& [key, value] : client.makeEntry(server)) members.emplace_back(key, value);
  std::stable_partition(members.begin(), members.end(),
                        [](const ConfigMember& entry) { return entry.first == "command"; });
  return members;
}

std::vector<ConfigMember> neededChanges(const McpClient& client, const ServerLaunch& server,
                                        const JSONObject& entry) {
  std::vector<ConfigMember> changes;
  bool saysArguments = false;
  for (const auto& [key, value] : entryMembers(client, server)) {
    saysArguments = saysArguments || key == "args";
    if (!saysTheSame(member(entry, key), *value)) changes.emplace_back(key, value);
  }
  const auto* const arguments = member(entry, "args");
  if (!saysArguments && arguments != nullptr && !isEmptyList(*arguments))
    changes.emplace_back("args", std::nullopt);
  return changes;
}

std::vector<std::string> launchedWords(const JSONObject& entry) {
  std::vector<std::string> words;
  const auto* const command = member(entry, "command");
  if (command == nullptr) return words;
  if (const auto* const program = command->string()) words.push_back(*program);
  appendTexts(words, command);
  if (!words.empty()) appendTexts(words, member(entry, "args"));
  return words;
}

bool launchesVelmora(const JSONObject& entry) {
  const auto words = launchedWords(entry);
  if (words.empty()) return false;
  if (isOurProgram(words.front())) return true;
  return std::filesystem::path(words.front()).filename() == "ssh" &&
         std::any_of(words.begin() + 1, words.end(), isOurProgram);
}

}  // namespace velmora
