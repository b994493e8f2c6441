#include "ClientSetup/JsonTree.h"

#include <algorithm>
#include <cctype>

#include "BridgeModels/Json/JsonReader.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isWordCharacter(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return std::isalnum(byte) != 0 || byte >= 0x80 ||
         std::string_view("_$+-.").find(character) != std::string_view::npos;
}

class Parser {
 public:
  Parser(std::string_view text, ConfigLanguage dialect) : text_(text), dialect_(dialect) {}

  JsonNode document() {
    if (!isValidUtf8(text_)) throw ConfigTextError("is not UTF-8");
    if (text_.starts_with(byteOrderMark)) at_ = byteOrderMark.size();
    skipBlanks();
    auto node = value();
    skipBlanks();
    if (at_ != text_.size()) fail();
    return node;
  }

 private:
  [[noreturn]] void fail() const {
    const auto before = text_.substr(0, at_);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    throw ConfigTextError("cannot be read at line " + std::to_string(line));
  }

  char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  bool sees(std::string_view word) const { return text_.substr(at_).starts_with(word); }
  bool take(char character) {
    if (peek() != character) return false;
    ++at_;
    return true;
  }
  void expect(char character) {
    if (!take(character)) fail();
  }

  void skipBlanks() {
    while (at_ < text_.size()) {
      if (std::string_view(" \t\r\n").find(text_[at_]) != std::string_view::npos) {
        ++at_;
      } else if (dialect_ != ConfigLanguage::json && sees("//")) {
        at_ = std::min(text_.find('\n', at_), text_.size());
      } else if (dialect_ != ConfigLanguage::json && sees("/*")) {
        const auto end = text_.find("*/", at_ + 2);
        if (end == std::string_view::npos) fail();
        at_ = end + 2;
      } else {
        return;
      }
    }
  }

  // Behind a member or an element: whether another may follow. `comma` is where the comma stands.
  bool goesOn(char close, std::size_t* comma) {
    skipBlanks();
    if (peek() != ',') return false;
    if (comma != nullptr) *comma = at_;
    ++at_;
    skipBlanks();
    if (peek() != close) return true;
    if (dialect_ == ConfigLanguage::json) fail();
    return false;
  }

  JsonNode value() {
    if (++depth_ > mostNestedValues) fail();
    JsonNode node;
    node.begin = at_;
    switch (peek()) {
      case '{':
        node.kind = JsonNode::Kind::object;
        object(node);
        break;
      case '[':
        node.kind = JsonNode::Kind::array;
        array(node);
        break;
      case '"':
      case '\'':
        node.kind = JsonNode::Kind::text;
        node.value = quoted();
        break;
      default:
        node.value = word();
    }
    node.end = at_;
    --depth_;
    return node;
  }

  void object(JsonNode& node) {
    expect('{');
    skipBlanks();
    if (peek() != '}') {
      bool more = true;
      while (more) {
        JsonMember member{.key = {}, .begin = at_};
        member.key = key();
        skipBlanks();
        expect(':');
        skipBlanks();
        member.value = value();
        more = goesOn('}', &member.comma);
        node.members.push_back(std::move(member));
      }
    }
    expect('}');
  }

  void array(JsonNode& node) {
    expect('[');
    skipBlanks();
    if (peek() != ']') {
      do node.elements.push_back(value());
      while (goesOn(']', nullptr));
    }
    expect(']');
  }

  std::string key() {
    if (peek() == '"' || peek() == '\'') return quoted();
    if (dialect_ != ConfigLanguage::json5) fail();
    return bareWord();
  }

  std::string bareWord() {
    const auto begin = at_;
    while (at_ < text_.size() && isWordCharacter(text_[at_])) ++at_;
    if (at_ == begin) fail();
    return std::string(text_.substr(begin, at_ - begin));
  }

  JSONValue word() {
    const auto begin = at_;
    auto text = bareWord();
    try {
      return decodeJson<JSONValue>(text);
    } catch (const JsonDecodeError&) {
      // JSON5 has more numbers than JSON; nothing here has to know which.
      if (dialect_ == ConfigLanguage::json5 && std::isalpha(static_cast<unsigned char>(text.front())) == 0)
        return text;
      if (dialect_ == ConfigLanguage::json5 && (text == "NaN" || text == "Infinity")) return text;
      at_ = begin;
      fail();
    }
  }

  // The text is written anew as strict JSON, whose reader checks it.
  std::string quoted() {
    const char quote = peek();
    const bool lenient = dialect_ == ConfigLanguage::json5;
    if (quote != '"' && !lenient) fail();
    const auto begin = at_++;
    std::string strict = "\"";
    while (peek() != quote) {
      if (at_ >= text_.size()) fail();
      if (peek() == '\\') {
        strict += lenient ? escape() : std::string(text_.substr(at_, 2));
        at_ += lenient ? 0 : 2;
      } else {
        if (peek() == '"') strict += '\\';
        strict += text_[at_++];
      }
    }
    ++at_;
    try {
      return decodeJson<std::string>(strict + '"');
    } catch (const JsonDecodeError&) {
      at_ = begin;
      fail();
    }
  }

  // One escape of JSON5's as JSON has it.
  std::string escape() {
    ++at_;
    const char letter = peek();
    if (letter == '\0') fail();
    ++at_;
    switch (letter) {
      case '\r':
        take('\n');
        return {};
      case '\n':
        return {};
      case 'v':
        return "\\u000b";
      case '0':
        return "\\u0000";
      case 'x': {
        const auto digits = text_.substr(at_, 2);
        at_ += digits.size();
        return "\\u00" + std::string(digits);
      }
      default:
        break;
    }
    if (std::string_view("\"\\/bfnrtu").find(letter) != std::string_view::npos)
      return std::string("\\") + letter;
    return std::string(1, letter);
  }

  std::string_view text_;
  ConfigLanguage dialect_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace

JsonNode parseJsonTree(std::string_view text, ConfigLanguage dialect) {
  return Parser(text, dialect).document();
}

std::optional<std::size_t> memberOf(const JsonNode& object, std::string_view key) {
  std::optional<std::size_t> found;
  for (std::size_t index = 0; index < object.members.size(); ++index) {
    if (object.members[index].key != key) continue;
    if (found) throw ConfigTextError("has \"" + std::string(key) + "\" twice");
    found = index;
  }
  return found;
}

JSONValue valueOf(const JsonNode& node) {
  if (node.kind == JsonNode::Kind::object) {
    JSONObject object;
    for (const auto& member : node.members) object.insert_or_assign(member.key, valueOf(member.value));
    return object;
  }
  if (node.kind == JsonNode::Kind::array) {
    JSONArray array;
    for (const auto& element : node.elements) array.push_back(valueOf(element));
    return array;
  }
  return node.value;
}

}  // namespace velmora
