#include "BridgeModels/Json/JsonWriter.h"

#include <array>
#include <charconv>
#include <cmath>

namespace velmora {

namespace {

constexpr std::size_t indentWidth = 2;

bool needsEscape(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\';
}

}  // namespace

void JsonWriter::key(std::string_view name) {
  separate();
  quote(name);
  text_.append(format_.pretty ? ": " : ":");
  followsKey_ = true;
}

void JsonWriter::null() {
  beginValue();
  text_.append("null");
}

void JsonWriter::boolean(bool value) {
  beginValue();
  text_.append(value ? "true" : "false");
}

void JsonWriter::integer(std::int64_t value) {
  beginValue();
  std::array<char, 24> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  text_.append(digits.data(), result.ptr);
}

void JsonWriter::number(double value) { finiteNumber(value, /*fixed=*/false); }

void JsonWriter::string(std::string_view value) {
  beginValue();
  quote(value);
}

void JsonWriter::date(Date value) {
  using Dates = JsonFormat::Dates;
  if (format_.dates == Dates::seconds) return finiteNumber(value.secondsSinceReferenceDate, /*fixed=*/true);
  try {
    string(format_.dates == Dates::text ? value.toIso8601() : value.toIso8601WithMilliseconds());
  } catch (const std::range_error& error) {
    throw JsonEncodeError(error.what());
  }
}

void JsonWriter::raw(std::string_view json) {
  beginValue();
  text_.append(json);
}

void JsonWriter::begin(char bracket) {
  beginValue();
  text_.push_back(bracket);
  ++depth_;
  followsValue_ = false;
}

void JsonWriter::end(char bracket) {
  --depth_;
  if (format_.pretty && followsValue_) text_.append(1, '\n').append(depth_ * indentWidth, ' ');
  text_.push_back(bracket);
  followsValue_ = true;
}

void JsonWriter::beginValue() {
  if (!followsKey_) separate();
  followsKey_ = false;
  followsValue_ = true;
}

void JsonWriter::separate() {
  if (followsValue_) text_.push_back(',');
  if (format_.pretty && depth_ > 0) text_.append(1, '\n').append(depth_ * indentWidth, ' ');
}

void JsonWriter::quote(std::string_view value) {
  text_.push_back('"');
  while (!value.empty()) {
    std::size_t plain = 0;
    while (plain < value.size() && !needsEscape(value[plain])) ++plain;
    text_.append(value.substr(0, plain));
    value.remove_prefix(plain);
    if (value.empty()) break;
    const char character = value.front();
    value.remove_prefix(1);
    switch (character) {
      case '"':
        text_.append("\\\"");
        break;
      case '\\':
        text_.append("\\\\");
        break;
      case '\n':
        text_.append("\\n");
        break;
      case '\r':
        text_.append("\\r");
        break;
      case '\t':
        text_.append("\\t");
        break;
      default: {
        constexpr std::string_view digits = "0123456789abcdef";
        text_.append("\\u00");
        text_.push_back(digits[static_cast<unsigned char>(character) >> 4]);
        text_.push_back(digits[static_cast<unsigned char>(character) & 0x0Fu]);
      }
    }
  }
  text_.push_back('"');
}

void JsonWriter::finiteNumber(double value, bool fixed) {
  if (!std::isfinite(value)) throw JsonEncodeError("JSON has no number for " + std::to_string(value));
  beginValue();
  std::array<char, 400>
      digits{};  // the longest fixed form of a double has 1 + 309 or 2 + 324 digits and signs
  auto* end = digits.data() + digits.size();
  const auto result = fixed ? std::to_chars(digits.data(), end, value, std::chars_format::fixed)
                            : std::to_chars(digits.data(), end, value);
  text_.append(digits.data(), result.ptr);
}

}  // namespace velmora
