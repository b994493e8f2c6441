#include "VelmoraHelper/Protocol/JsonSourceText.h"

#include <algorithm>
#include <boost/json/parse.hpp>

namespace velmora {

namespace {

constexpr const char* blank = " \t\r\n";

// Goes through the values of one object or array.
class Cursor {
 public:
  Cursor(std::string_view document, char opening, char closing) : text_(document), closing_(closing) {
    position_ = text_.find_first_not_of(blank);
    if (take() != opening) throw NoSuchText();
  }

  // Moves to the next key or element; false at the end of the document's object or array.
  bool findValue() {
    skipBlank();
    if (peek() == ',' || peek() == ':') {
      ++position_;
      skipBlank();
    }
    if (peek() != closing_) return true;
    if (text_.find_first_not_of(blank, position_ + 1) != std::string_view::npos) throw NoSuchText();
    return false;
  }

  std::string_view takeValue() {
    const auto begin = position_;
    if (peek() == '"') return takeString();
    if (peek() == '{' || peek() == '[') {
      takeNested();
    } else {
      position_ = std::min(text_.find_first_of(",:}] \t\r\n", position_), text_.size());
    }
    if (position_ == begin) throw NoSuchText();
    return text_.substr(begin, position_ - begin);
  }

 private:
  char peek() const {
    if (position_ >= text_.size()) throw NoSuchText();
    return text_[position_];
  }

  char take() {
    const char character = peek();
    ++position_;
    return character;
  }

  void skipBlank() { position_ = std::min(text_.find_first_not_of(blank, position_), text_.size()); }

  std::string_view takeString() {
    const auto begin = position_++;
    for (char character = take(); character != '"'; character = take()) {
      if (character == '\\') take();
    }
    return text_.substr(begin, position_ - begin);
  }

  void takeNested() {
    std::size_t depth = 0;
    do {
      position_ = text_.find_first_of("\"{}[]", position_);
      if (peek() == '"') {
        takeString();
        continue;
      }
      const char character = take();
      depth = character == '{' || character == '[' ? depth + 1 : depth - 1;
    } while (depth > 0);
  }

  std::string_view text_;
  char closing_;
  std::size_t position_ = 0;
};

bool spells(std::string_view quoted, std::string_view name) {
  if (quoted.find('\\') == std::string_view::npos) {
    return quoted.size() == name.size() + 2 && quoted.substr(1, name.size()) == name;
  }
  boost::json::error_code error;
  const auto decoded = boost::json::parse(boost::json::string_view(quoted.data(), quoted.size()), error);
  return !error && decoded.is_string() &&
         std::string_view(decoded.get_string().data(), decoded.get_string().size()) == name;
}

}  // namespace

std::string_view lastMemberText(std::string_view document, std::string_view name) {
  std::string_view found;
  for (Cursor cursor(document, '{', '}'); cursor.findValue();) {
    const auto key = cursor.takeValue();
    cursor.findValue();
    const auto value = cursor.takeValue();
    if (spells(key, name)) found = value;
  }
  return found;
}

std::string_view memberTextInBeginning(std::string_view beginning, std::string_view name) {
  try {
    for (Cursor cursor(beginning, '{', '}'); cursor.findValue();) {
      const auto key = cursor.takeValue();
      cursor.findValue();
      const auto value = cursor.takeValue();
      // A number that ends where the text does may go on.
      if (spells(key, name)) return value.end() == beginning.end() ? std::string_view() : value;
    }
  } catch (const NoSuchText&) {  // it is cut off here
  }
  return {};
}

std::vector<std::string_view> elementTexts(std::string_view document) {
  std::vector<std::string_view> elements;
  for (Cursor cursor(document, '[', ']'); cursor.findValue();) elements.push_back(cursor.takeValue());
  return elements;
}

}  // namespace velmora
