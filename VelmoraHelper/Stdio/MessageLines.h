// Cuts a byte stream into lines, one message each.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Feed it the stream in pieces of any size and take lines until there are none left. It never blocks and
/// keeps at most one line of the maximum length besides what was fed and not yet taken. A longer line is
/// reported once, as soon as it is known to be too long, and the rest of it is dropped; the next line is
/// whole again. Not thread-safe.
class MessageLines {
 public:
  struct Line {
    std::string text{};    ///< Without its line end (LF or CR LF). Empty when too long.
    bool tooLong = false;  ///< More than `maximumLength` bytes.
  };

  explicit MessageLines(std::size_t maximumLength) : maximumLength_(maximumLength) {}

  void feed(std::string_view bytes) { buffer_.append(bytes); }

  /// The stream has ended: text without a line end counts as a line.
  void finish();

  /// The next line that is not blank, or nothing until more is fed.
  std::optional<Line> next();

 private:
  void compact();

  std::size_t maximumLength_;
  std::string buffer_{};
  std::size_t taken_ = 0;     // where the first line not yet taken begins
  std::size_t searched_ = 0;  // no line feed stands between `taken_` and here
  bool dropping_ = false;     // inside a line that was reported as too long
};

}  // namespace velmora
