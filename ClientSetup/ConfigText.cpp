#include "ClientSetup/ConfigText.h"

#include "ClientSetup/JsonEdit.h"
#include "ClientSetup/TomlEdit.h"

namespace velmora {

namespace {

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

// Names end where something is missing; `object` is the last that is there.
struct Reached {
  const JsonNode* object;
  std::size_t names = 0;
};

Reached follow(const JsonNode& document, const ConfigPath& path) {
  if (document.kind != JsonNode::Kind::object) throw ConfigTextError("holds no object");
  Reached reached{&document};
  for (const auto& name : path) {
    const auto index = memberOf(*reached.object, name);
    if (!index) break;
    reached.object = &reached.object->members[*index].value;
    if (reached.object->kind != JsonNode::Kind::object)
      throw ConfigTextError("has a \"" + name + "\" that is no object");
    ++reached.names;
  }
  return reached;
}

JSONObject objectOf(std::span<const ConfigMember> members) {
  JSONObject object;
  for (const auto& [key, value] : members) {
    if (value) object.insert_or_assign(key, *value);
  }
  return object;
}

// What the user has beside the entry. The empty objects on the way to it may come and go.
JSONValue others(JSONValue document, const ConfigPath& path, std::size_t depth = 0) {
  auto* const object = std::get_if<JSONObject>(&document.storage);
  const auto member = object->find(path[depth]);
  if (member == object->end()) return document;
  if (depth + 1 < path.size()) member->second = others(std::move(member->second), path, depth + 1);
  if (depth + 1 == path.size() || member->second.object()->empty()) object->erase(member);
  return document;
}

// The last guard: whatever the edit did, the rest of the document still says the same.
std::string checked(ConfigLanguage language, std::string_view before, std::string after,
                    const ConfigPath& path) {
  if (others(valueOf(parseJsonTree(before, language)), path) !=
      others(valueOf(parseJsonTree(after, language)), path))
    throw ConfigTextError("cannot be changed without touching the rest of it");
  return after;
}

std::string withJsonEntry(ConfigLanguage language, const std::string& text, const ConfigPath& path,
                          std::span<const ConfigMember> members) {
  const auto document = parseJsonTree(text, language);
  const auto reached = follow(document, path);
  if (reached.names < path.size()) {
    JSONValue value = objectOf(members);
    for (auto missing = path.size() - 1; missing > reached.names; --missing)
      value = JSONObject{{path[missing], std::move(value)}};
    return withMember(text, document, *reached.object, path[reached.names], value);
  }
  auto changed = text;
  for (const auto& [key, value] : members) {
    const auto tree = parseJsonTree(changed, language);
    const auto& entry = *follow(tree, path).object;
    const auto index = memberOf(entry, key);
    if (value) changed = withMember(changed, tree, entry, key, *value);
    if (!value && index) changed = withoutMember(changed, entry, *index);
  }
  return changed;
}

}  // namespace

std::optional<JSONObject> readEntry(ConfigLanguage language, std::string_view text, const ConfigPath& path) {
  if (language == ConfigLanguage::toml) return readTomlTable(text, path);
  if (isBlank(text)) return std::nullopt;
  const auto document = parseJsonTree(text, language);
  const auto reached = follow(document, path);
  if (reached.names < path.size()) return std::nullopt;
  return *valueOf(*reached.object).object();
}

std::string withEntry(ConfigLanguage language, std::string_view text, const ConfigPath& path,
                      std::span<const ConfigMember> members) {
  if (language == ConfigLanguage::toml) return withTomlTable(text, path, members);
  if (!isBlank(text))
    return checked(language, text, withJsonEntry(language, std::string(text), path, members), path);
  JSONValue value = objectOf(members);
  for (auto name = path.rbegin(); name != path.rend(); ++name) value = JSONObject{{*name, std::move(value)}};
  return newDocument(value);
}

std::string withoutEntry(ConfigLanguage language, std::string_view text, const ConfigPath& path) {
  if (language == ConfigLanguage::toml) return withoutTomlTable(text, path);
  const auto document = parseJsonTree(text, language);
  const ConfigPath parents(path.begin(), path.end() - 1);
  const auto& parent = *follow(document, parents).object;
  const auto index = memberOf(parent, path.back());
  if (!index) throw ConfigTextError("has no \"" + path.back() + "\"");
  return checked(language, text, withoutMember(text, parent, *index), path);
}

}  // namespace velmora
