#include "ClientSetup/TomlEdit.h"

#include <algorithm>

#include "ClientSetup/Quoting.h"
#include "ClientSetup/TomlText.h"

namespace velmora {

namespace {

using Kind = TomlStatement::Kind;

bool leadsTo(const ConfigPath& start, const ConfigPath& path) {
  return start.size() <= path.size() && std::equal(start.begin(), start.end(), path.begin());
}

std::string headingOf(const ConfigPath& path) {
  std::string heading;
  for (const auto& name : path) heading += (heading.empty() ? "[" : ".") + name;
  return heading + "]";
}

std::string tomlValue(const JSONValue& value) {
  if (const auto* const text = value.string()) return tomlQuoted(*text);
  std::string list;
  for (const auto& element : *value.array())
    list += (list.empty() ? "[" : ", ") + tomlQuoted(*element.string());
  return (list.empty() ? "[" : list) + "]";
}

// A document in which the entry stands in a table of its own, or not at all.
class Document {
 public:
  Document(std::string_view text, const ConfigPath& path) : text_(text), statements_(tomlStatements(text)) {
    for (std::size_t index = 0; index < statements_.size(); ++index) {
      const auto& statement = statements_[index];
      if (statement.kind == Kind::table && statement.path == path) {
        if (table_) throw ConfigTextError("has " + headingOf(path) + " twice");
        table_ = index;
      }
      const bool isElsewhere = statement.kind == Kind::pair
                                   ? leadsTo(statement.path, path) ||
                                         (leadsTo(path, statement.path) && statement.inTable < path.size())
                                   : statement.kind == Kind::tableOfArray && leadsTo(statement.path, path);
      if (isElsewhere) throw ConfigTextError("does not have " + headingOf(path) + " as a table of its own");
    }
    for (const auto& one : pairs()) {
      if (std::ranges::count(pairs(), one.path, &TomlStatement::path) > 1)
        throw ConfigTextError("has \"" + one.path.back() + "\" twice in " + headingOf(path));
    }
  }

  const TomlStatement* table() const { return table_ ? &statements_[*table_] : nullptr; }

  // The pairs of the table itself.
  std::span<const TomlStatement> pairs() const {
    if (!table_) return {};
    auto end = *table_ + 1;
    while (end < statements_.size() && statements_[end].kind == Kind::pair) ++end;
    return std::span(statements_).subspan(*table_ + 1, end - *table_ - 1);
  }

  const TomlStatement* pair(const std::string& key) const {
    for (const auto& statement : pairs()) {
      if (statement.path.size() == table()->path.size() + 1 && statement.path.back() == key)
        return &statement;
    }
    return nullptr;
  }

  std::size_t lineBegin(std::size_t at) const {
    const auto newline = at == 0 ? std::string_view::npos : text_.rfind('\n', at - 1);
    return newline == std::string_view::npos ? 0 : newline + 1;
  }
  // Behind the newline.
  std::size_t lineEnd(std::size_t at) const {
    const auto newline = text_.find('\n', at);
    return newline == std::string_view::npos ? text_.size() : newline + 1;
  }

  // The places of the table and of those below it, each with its pairs.
  std::vector<std::pair<std::size_t, std::size_t>> blocks(const ConfigPath& path) const {
    std::vector<std::pair<std::size_t, std::size_t>> found;
    bool isOurs = false;
    for (const auto& statement : statements_) {
      if (statement.kind != Kind::pair) {
        isOurs = leadsTo(path, statement.path);
        if (isOurs) found.emplace_back(lineBegin(statement.begin), 0);
      }
      if (isOurs) found.back().second = lineEnd(statement.end);
    }
    return found;
  }

  // What is not ours, each statement as it is written.
  std::vector<std::string> others(const ConfigPath& path) const {
    std::vector<std::string> found;
    for (const auto& statement : statements_) {
      if (!leadsTo(path, statement.path))
        found.emplace_back(text_.substr(statement.begin, statement.end - statement.begin));
    }
    return found;
  }

 private:
  std::string_view text_;
  std::vector<TomlStatement> statements_;
  std::optional<std::size_t> table_;
};

std::string newlineOf(std::string_view text) {
  return text.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
}

std::string withPair(const std::string& text, const ConfigPath& path, const ConfigMember& member) {
  const Document document(text, path);
  const auto& [key, value] = member;
  auto changed = text;
  if (const auto* const pair = document.pair(key)) {
    if (value) return changed.replace(pair->valueBegin, pair->end - pair->valueBegin, tomlValue(*value));
    const auto begin = document.lineBegin(pair->begin);
    return changed.erase(begin, document.lineEnd(pair->end) - begin);
  }
  if (!value) return changed;
  const auto* before = document.table();
  if (before == nullptr) throw ConfigTextError("does not have " + headingOf(path));
  if (const auto pairs = document.pairs(); !pairs.empty()) before = &pairs.back();
  const auto begin = document.lineBegin(before->begin);
  const auto line = text.substr(begin, before->begin - begin) + key + " = " + tomlValue(*value);
  const auto place = document.lineEnd(before->end);
  const bool endsWithNewline = place > 0 && text[place - 1] == '\n';
  return changed.insert(place, endsWithNewline ? line + newlineOf(text) : newlineOf(text) + line);
}

std::string checked(std::string_view before, std::string after, const ConfigPath& path) {
  if (Document(before, path).others(path) != Document(after, path).others(path))
    throw ConfigTextError("cannot be changed without touching the rest of it");
  return after;
}

}  // namespace

std::string tomlTable(const ConfigPath& path, std::span<const ConfigMember> members) {
  auto table = headingOf(path);
  for (const auto& [key, value] : members) {
    if (value) table += "\n" + key + " = " + tomlValue(*value);
  }
  return table;
}

std::optional<JSONObject> readTomlTable(std::string_view text, const ConfigPath& path) {
  const Document document(text, path);
  if (document.table() == nullptr) return std::nullopt;
  JSONObject entry;
  for (const auto& pair : document.pairs()) entry.insert_or_assign(pair.path[path.size()], pair.value);
  return entry;
}

std::string withTomlTable(std::string_view text, const ConfigPath& path,
                          std::span<const ConfigMember> members) {
  std::string changed(text);
  if (Document(text, path).table() != nullptr) {
    for (const auto& member : members) changed = withPair(changed, path, member);
    return checked(text, std::move(changed), path);
  }
  const auto newline = newlineOf(text);
  if (!changed.empty() && !changed.ends_with('\n')) changed += newline;
  if (!changed.empty()) changed += newline;
  for (const char character : tomlTable(path, members) + "\n")
    changed += character == '\n' ? newline : std::string(1, character);
  return checked(text, std::move(changed), path);
}

std::string withoutTomlTable(std::string_view text, const ConfigPath& path) {
  auto blocks = Document(text, path).blocks(path);
  std::string changed(text);
  std::reverse(blocks.begin(), blocks.end());
  for (auto [begin, end] : blocks) {
    // With the empty line that parts it from what is before.
    const auto before = std::string_view(changed).substr(0, begin);
    if (before.ends_with("\n\n")) begin -= 1;
    if (before.ends_with("\n\r\n")) begin -= 2;
    changed.erase(begin, end - begin);
  }
  return checked(text, std::move(changed), path);
}

}  // namespace velmora
