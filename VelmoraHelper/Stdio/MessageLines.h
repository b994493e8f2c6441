// Cuts a byte stream into lines, one message each.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Feed it the stream in pieces of any size and take lines until there are none left. It never blocks and
/// keeps at most one line of the maximum length besides what was fed and not yet taken. Of a longer line only
/// the two ends are kept, where clients put what names the message; it is reported when it has ended. Not
/// thread-safe.
class MessageLines {
 public:
  struct Line {
    std::string text{};    ///< Without its line end (LF or CR LF). When too long, how it begins.
    std::string end{};     ///< When too long, how it ends.
    bool tooLong = false;  ///< More than `maximumLength` bytes.
  };

  explicit MessageLines(std::size_t maximumLength) : maximumLength_(maximumLength) {}

  void feed(std::string_view bytes) { buffer_.append(bytes); }

  /// The stream has ended: text without a line end counts as a line.
  void finish();

  /// The next line that is not blank, or nothing until more is fed.
  std::optional<Line> next();

 private:
  static constexpr std::size_t keptOfAnEnd = 4096;

  static std::string_view endOf(std::string_view text);
  void dropMiddle();
  void compact();

  std::size_t maximumLength_;
  std::string buffer_{};
  std::size_t taken_ = 0;     // where the first line not yet taken begins
  std::size_t searched_ = 0;  // no line feed stands between `taken_` and here
  bool dropping_ = false;     // inside a line that is too long
  std::string beginning_{};   // of that line
};

}  // namespace velmora
