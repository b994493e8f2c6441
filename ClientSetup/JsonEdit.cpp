#include "ClientSetup/JsonEdit.h"

#include <algorithm>

#include "BridgeModels/Json/JsonEncoding.h"

namespace velmora {

namespace {

constexpr auto nowhere = std::string_view::npos;
constexpr std::string_view blanks = " \t";
constexpr std::string_view blanksAndLines = " \t\r\n";

struct Edit {
  std::size_t begin;
  std::size_t end;
  std::string text;
};

// The edits do not overlap; of two at one place the first comes first.
std::string edited(std::string_view text, const std::vector<Edit>& edits) {
  std::string result;
  std::size_t at = 0;
  for (const auto& edit : edits) {
    result.append(text.substr(at, edit.begin - at)).append(edit.text);
    at = edit.end;
  }
  return result.append(text.substr(at));
}

std::size_t lineBegin(std::string_view text, std::size_t at) {
  const auto newline = at == 0 ? nowhere : text.rfind('\n', at - 1);
  return newline == nowhere ? 0 : newline + 1;
}

// The blanks with which the line around `at` begins.
std::string indentAt(std::string_view text, std::size_t at) {
  const auto line = text.substr(lineBegin(text, at));
  return std::string(line.substr(0, std::min(line.find_first_not_of(blanks), line.size())));
}

bool isFirstOnLine(std::string_view text, std::size_t at) {
  const auto begin = lineBegin(text, at);
  return begin > 0 && text.substr(begin, at - begin).find_first_not_of(blanks) == nowhere;
}

bool spansLines(std::string_view text, const JsonNode& node) {
  return text.substr(node.begin, node.end - node.begin).find('\n') != nowhere;
}

// How the document is laid out, read from it.
struct Layout {
  std::string newline = "\n";
  std::string step = "  ";

  Layout(std::string_view text, const JsonNode& document) {
    if (text.find("\r\n") != nowhere) newline = "\r\n";
    if (document.members.empty() || !isFirstOnLine(text, document.members.front().begin)) return;
    const auto indent = indentAt(text, document.members.front().begin);
    if (!indent.empty()) step = indent;
  }

  std::string pretty(const JSONValue& value, const std::string& indent) const {
    constexpr std::size_t encodersStep = 2;
    const auto lines = encodeJson(value, JsonFormat::store);
    std::string text;
    for (std::size_t begin = 0; begin <= lines.size();) {
      const auto end = std::min(lines.find('\n', begin), lines.size());
      const auto first = std::min(lines.find_first_not_of(' ', begin), end);
      if (begin > 0) {
        text += newline + indent;
        for (auto depth = (first - begin) / encodersStep; depth > 0; --depth) text += step;
      }
      text.append(lines, first, end - first);
      begin = end + 1;
    }
    return text;
  }
};

std::string inserted(std::string_view text, const JsonNode& document, const JsonNode& object,
                     const std::string& key, const JSONValue& value) {
  const Layout layout(text, document);
  const auto* const last = object.members.empty() ? nullptr : &object.members.back();
  const bool commaIsThere = last != nullptr && last->comma != nowhere;
  const bool isOneLine =
      !spansLines(text, object) && (last != nullptr || (!spansLines(text, document) && &object != &document));
  if (isOneLine) {
    const auto place =
        last == nullptr ? object.begin + 1 : (commaIsThere ? last->comma + 1 : last->value.end);
    const std::string before = last == nullptr ? "" : (commaIsThere ? " " : ", ");
    return edited(text,
                  {{place, place, before + key + ": " + encodeJson(value) + (commaIsThere ? "," : "")}});
  }
  std::vector<Edit> edits;
  if (last != nullptr && !commaIsThere) edits.push_back({last->value.end, last->value.end, ","});
  const auto outer = indentAt(text, object.begin);
  const auto inner =
      last != nullptr && isFirstOnLine(text, last->begin) ? indentAt(text, last->begin) : outer + layout.step;
  const auto brace = object.end - 1;
  const auto place = text.find_last_not_of(blanksAndLines, brace - 1) + 1;
  auto added = layout.newline + inner + key + ": " + layout.pretty(value, inner) + (commaIsThere ? "," : "");
  const bool braceHasALine = text.substr(place, brace - place).find('\n') != nowhere;
  edits.push_back(
      {place, braceHasALine ? place : brace, added + (braceHasALine ? "" : layout.newline + outer)});
  return edited(text, edits);
}

}  // namespace

std::string withMember(std::string_view text, const JsonNode& document, const JsonNode& object,
                       std::string_view key, const JSONValue& value) {
  const auto index = memberOf(object, key);
  if (!index) return inserted(text, document, object, encodeJson(std::string(key)), value);
  const auto& old = object.members[*index].value;
  const auto isOneLine = !spansLines(text, object);
  const Layout layout(text, document);
  return edited(text, {{old.begin, old.end,
                        isOneLine ? encodeJson(value) : layout.pretty(value, indentAt(text, old.begin))}});
}

std::string withoutMember(std::string_view text, const JsonNode& object, std::size_t index) {
  const auto& member = object.members[index];
  const bool hasComma = member.comma != nowhere;
  auto begin = member.begin;
  auto end = hasComma ? member.comma + 1 : member.value.end;
  const auto rest = text.substr(end, text.find('\n', end) - end);
  const auto restBegin = std::min(rest.find_first_not_of(" \t\r"), rest.size());
  const bool leavesItsLine = restBegin == rest.size() || rest.substr(restBegin).starts_with("//");
  if (isFirstOnLine(text, begin)) {
    // What follows on its line must not get behind a comment that ends the line before.
    if (leavesItsLine) begin = text.find_last_not_of(" \t\r", lineBegin(text, begin) - 2) + 1;
  } else if (!hasComma) {
    begin = text.find_last_not_of(blanks, begin - 1) + 1;
  }
  if (!leavesItsLine && hasComma) end += std::min(rest.find_first_not_of(blanks), rest.size());
  std::vector<Edit> edits;
  if (!hasComma && index > 0) {
    const auto comma = object.members[index - 1].comma;
    edits.push_back({comma, comma + 1, ""});
  }
  if (hasComma && member.comma != member.value.end) {
    edits.push_back({begin, member.value.end, ""});
    edits.push_back({member.comma, end, ""});
  } else {
    edits.push_back({begin, end, ""});
  }
  const auto inner = text.substr(object.begin + 1, begin - object.begin - 1);
  const auto after = text.substr(end, object.end - 1 - end);
  if (object.members.size() == 1 && inner.find_first_not_of(blanksAndLines) == nowhere &&
      after.find_first_not_of(blanksAndLines) == nowhere)
    edits = {{object.begin, object.end, "{}"}};
  return edited(text, edits);
}

std::string newDocument(const JSONValue& value) { return encodeJson(value, JsonFormat::store) + "\n"; }

}  // namespace velmora
