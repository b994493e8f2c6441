#include "VelmoraHelper/Tools/CapturedPicture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <string_view>

#include "System/FileDescriptor.h"

namespace velmora {

namespace {

// W3C Portable Network Graphics, section 5.2.
constexpr std::string_view pngSignature("\x89PNG\r\n\x1A\n");

// The first `size` bytes of the file, or fewer when it is shorter.
std::string readBytes(int descriptor, std::size_t size) {
  std::string bytes(size, '\0');
  std::size_t have = 0;
  while (have < size) {
    const auto count = ::pread(descriptor, bytes.data() + have, size - have, static_cast<off_t>(have));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    have += static_cast<std::size_t>(count);
  }
  bytes.resize(have);
  return bytes;
}

}  // namespace

std::optional<CapturedPicture> readPicture(const std::string& path, std::size_t largestInline) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  if (readBytes(file.get(), pngSignature.size()) != pngSignature) return std::nullopt;
  CapturedPicture picture{.bytes = static_cast<std::uint64_t>(status.st_size)};
  if (picture.bytes <= largestInline) {
    picture.base64 = base64(readBytes(file.get(), static_cast<std::size_t>(picture.bytes)));
  }
  return picture;
}

std::string base64(std::string_view bytes) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t begin = 0; begin < bytes.size(); begin += 3) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      const auto byte = begin + i < bytes.size() ? static_cast<unsigned char>(bytes[begin + i]) : 0u;
      group = group << 8 | byte;
    }
    const auto have = std::min<std::size_t>(bytes.size() - begin, 3);
    for (std::size_t i = 0; i < 4; ++i) {
      text.push_back(i <= have ? digits[group >> (18 - 6 * i) & 63] : '=');
    }
  }
  return text;
}

std::string fileUri(const std::string& path) {
  constexpr std::string_view hexadecimal = "0123456789ABCDEF";
  constexpr std::string_view unreserved = "/-._~";
  std::string uri = "file://";
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isPlain =
        byte < 0x80 && (std::isalnum(byte) != 0 || unreserved.find(character) != std::string_view::npos);
    if (isPlain) {
      uri.push_back(character);
    } else {
      uri.append({'%', hexadecimal[byte >> 4], hexadecimal[byte & 15]});
    }
  }
  return uri;
}

}  // namespace velmora
