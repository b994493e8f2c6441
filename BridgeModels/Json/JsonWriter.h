// Writes JSON text token by token. `encodeJson` writes a whole value; use the writer for what no record
// describes, rather than joining pieces of text.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "BridgeModels/Date.h"
#include "BridgeModels/Json/JsonFormat.h"

namespace velmora {

/// A value that JSON cannot carry: a number that is not finite, a date outside the years 0 to 9999.
class JsonEncodeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Appends JSON tokens to a text. The caller keeps the order right (a key before each member's value);
/// strings must be valid UTF-8. Not thread-safe.
class JsonWriter {
 public:
  explicit JsonWriter(JsonFormat format) : format_(format) {}

  JsonFormat format() const { return format_; }

  /// Whether the keys of the records that follow are sorted.
  void setSorted(bool sorted) { format_.sorted = sorted; }

  void beginObject() { begin('{'); }
  void endObject() { end('}'); }
  void beginArray() { begin('['); }
  void endArray() { end(']'); }
  void key(std::string_view name);

  void null();
  void boolean(bool value);
  void integer(std::int64_t value);
  void number(double value);  ///< The shortest text that reads back the same.
  void string(std::string_view value);
  void date(Date value);
  void raw(std::string_view json);  ///< A value that is JSON text already.

  /// The finished text; the writer is empty afterwards.
  std::string take() { return std::move(text_); }

 private:
  void begin(char bracket);
  void end(char bracket);
  void beginValue();
  void separate();
  void quote(std::string_view value);
  void finiteNumber(double value, bool fixed);

  JsonFormat format_;
  std::string text_;
  std::size_t depth_ = 0;
  bool followsValue_ = false;
  bool followsKey_ = false;
};

}  // namespace velmora
