// The picture of a capture, for clients that cannot read the user's files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

struct CapturedPicture {
  std::uint64_t bytes = 0;              ///< The file's size.
  std::optional<std::string> base64{};  ///< The file's content; absent when it is larger than the limit.

  bool operator==(const CapturedPicture&) const = default;
};

/// The PNG file at `path`, or nothing when no such file can be read: only a plain file is, never what a link
/// leads to. Its content is read when it has at most `largestInline` bytes.
std::optional<CapturedPicture> readPicture(const std::string& path, std::size_t largestInline);

/// RFC 4648, section 4.
std::string base64(std::string_view bytes);

/// `path` as a file URI (RFC 8089).
std::string fileUri(const std::string& path);

}  // namespace velmora
