#include "ClientSetup/TomlText.h"

#include <algorithm>
#include <cctype>

#include "BridgeModels/Json/JsonReader.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

bool isBareKeyCharacter(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_' || character == '-';
}

// Of numbers, dates and the words true, false, inf and nan. A date and its time may be parted by a blank.
bool isScalarCharacter(char character) {
  return isBareKeyCharacter(character) || std::string_view("+.:").find(character) != std::string_view::npos;
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  std::vector<TomlStatement> statements() {
    if (!isValidUtf8(text_)) throw ConfigTextError("is not UTF-8");
    if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
    std::vector<TomlStatement> found;
    for (skipToStatement(); at_ < text_.size(); skipToStatement()) {
      found.push_back(peek() == '[' ? heading() : pair());
      endOfLine();
    }
    return found;
  }

 private:
  [[noreturn]] void fail() const {
    const auto before = text_.substr(0, at_);
    throw ConfigTextError("cannot be read at line " +
                          std::to_string(1 + std::count(before.begin(), before.end(), '\n')));
  }

  char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  bool take(std::string_view word) {
    if (!text_.substr(at_).starts_with(word)) return false;
    at_ += word.size();
    return true;
  }
  void expect(std::string_view word) {
    if (!take(word)) fail();
  }
  void skipBlanks() {
    while (peek() == ' ' || peek() == '\t') ++at_;
  }
  void skipComment() {
    if (peek() == '#') at_ = std::min(text_.find('\n', at_), text_.size());
  }
  bool takeNewline() { return take("\n") || take("\r\n"); }

  void skipToStatement() {
    do {
      skipBlanks();
      skipComment();
    } while (takeNewline());
  }
  void endOfLine() {
    skipBlanks();
    skipComment();
    if (at_ < text_.size() && !takeNewline()) fail();
  }

  ConfigPath keys() {
    ConfigPath path;
    do {
      skipBlanks();
      path.push_back(key());
      skipBlanks();
    } while (take("."));
    return path;
  }

  std::string key() {
    if (peek() == '"' || peek() == '\'') return shortText();
    const auto begin = at_;
    while (isBareKeyCharacter(peek())) ++at_;
    if (at_ == begin) fail();
    return std::string(text_.substr(begin, at_ - begin));
  }

  TomlStatement heading() {
    TomlStatement statement{.kind = TomlStatement::Kind::table, .begin = at_};
    expect("[");
    if (take("[")) statement.kind = TomlStatement::Kind::tableOfArray;
    statement.path = keys();
    expect(statement.kind == TomlStatement::Kind::table ? "]" : "]]");
    statement.end = at_;
    statement.inTable = statement.path.size();
    table_ = statement.path;
    return statement;
  }

  TomlStatement pair() {
    TomlStatement statement{.begin = at_, .path = table_, .inTable = table_.size()};
    const auto names = keys();
    statement.path.insert(statement.path.end(), names.begin(), names.end());
    expect("=");
    skipBlanks();
    statement.valueBegin = at_;
    statement.value = value();
    statement.end = at_;
    return statement;
  }

  JSONValue value() {
    if (++depth_ > mostNestedValues) fail();
    JSONValue read;
    if (peek() == '"' || peek() == '\'') {
      read = text();
    } else if (peek() == '[') {
      read = array();
    } else if (peek() == '{') {
      inlineTable();
    } else {
      scalar();
    }
    --depth_;
    return read;
  }

  JSONValue array() {
    expect("[");
    JSONArray elements;
    bool onlyTexts = true;
    for (skipToStatement(); !take("]"); skipToStatement()) {
      elements.push_back(value());
      onlyTexts = onlyTexts && elements.back().string() != nullptr;
      skipToStatement();
      if (peek() != ']') expect(",");
    }
    return onlyTexts ? JSONValue(std::move(elements)) : JSONValue();
  }

  void inlineTable() {
    expect("{");
    skipBlanks();
    if (take("}")) return;
    do {
      keys();
      expect("=");
      skipBlanks();
      value();
      skipBlanks();
    } while (take(","));
    expect("}");
  }

  void scalar() {
    const auto begin = at_;
    while (isScalarCharacter(peek()) ||
           (peek() == ' ' && at_ > begin && at_ + 1 < text_.size() && text_[at_ - 1] != ' ' &&
            std::isdigit(static_cast<unsigned char>(text_[at_ + 1])) != 0))
      ++at_;
    if (at_ == begin) fail();
  }

  std::string text() {
    if (take("\"\"\"")) return longText("\"\"\"");
    if (take("'''")) return longText("'''");
    return shortText();
  }

  // The escapes of TOML are JSON's, but for \e, \x and \U, which nothing here has to know.
  static std::string unescaped(const std::string& strict) {
    try {
      return decodeJson<std::string>('"' + strict + '"');
    } catch (const JsonDecodeError&) {
      return {};
    }
  }

  std::string shortText() {
    const char quote = peek();
    const auto begin = ++at_;
    while (peek() != quote) {
      if (at_ >= text_.size() || peek() == '\n') fail();
      at_ += quote == '"' && peek() == '\\' ? 2U : 1U;
    }
    const std::string inside(text_.substr(begin, at_++ - begin));
    return quote == '"' ? unescaped(inside) : inside;
  }

  std::string longText(std::string_view quotes) {
    const auto begin = at_;
    while (at_ < text_.size() && !text_.substr(at_).starts_with(quotes))
      at_ += quotes.front() == '"' && peek() == '\\' ? 2U : 1U;
    if (at_ >= text_.size()) fail();
    std::string inside(text_.substr(begin, at_ - begin));
    at_ += quotes.size();
    // One or two quotes may stand before the three that end it.
    while (peek() == quotes.front()) ++at_;
    return inside;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  ConfigPath table_;
  int depth_ = 0;
};

}  // namespace

std::vector<TomlStatement> tomlStatements(std::string_view text) { return Scanner(text).statements(); }

}  // namespace velmora
