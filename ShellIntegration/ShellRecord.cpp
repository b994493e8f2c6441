#include "ShellIntegration/ShellRecord.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "System/FileDescriptor.h"

namespace velmora {

namespace {

constexpr std::size_t longestRecord = 256;

/// Reads a number from 0 to `limit`, and the blank before it unless it is the first.
template <class Integer>
bool readNumber(std::string_view& text, Integer& value, bool first = false,
                std::int64_t limit = std::numeric_limits<Integer>::max()) {
  if (!first) {
    if (!text.starts_with(' ')) return false;
    text.remove_prefix(1);
  }
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || value < 0 || value > limit) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

bool readStatus(std::string_view& text, std::optional<int>& status) {
  constexpr std::string_view unknown = " -";
  if (!text.starts_with(unknown)) return readNumber(text, status.emplace(), false, 255);
  text.remove_prefix(unknown.size());
  return true;
}

bool isSafe(const FileDescriptor& file, mode_t kind) {
  struct stat status {};
  return ::fstat(file.get(), &status) == 0 && (status.st_mode & S_IFMT) == kind &&
         status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// "/dev/pts/3" is "pts-3"; empty for what is no terminal's name.
std::string fileNameOf(std::string_view tty) {
  constexpr std::string_view devices = "/dev/";
  if (!tty.starts_with(devices)) return {};
  std::string name(tty.substr(devices.size()));
  std::replace(name.begin(), name.end(), '/', '-');
  const bool plain = !name.empty() && name.front() >= 'a' && name.front() <= 'z';
  return plain && name.find('\0') == std::string::npos ? name : std::string();
}

}  // namespace

std::optional<ShellRecord> parseShellRecord(std::string_view text) {
  int version = 0;
  ShellRecord record;
  const bool good = readNumber(text, version, true) && version == 1 && readNumber(text, record.process) &&
                    readNumber(text, record.startTicks) && readNumber(text, record.instance) &&
                    readNumber(text, record.number) && readStatus(text, record.status) &&
                    readNumber(text, record.began) && readNumber(text, record.ended);
  if (!good || record.process < 1 || !text.ends_with('\n')) return std::nullopt;
  text.remove_suffix(1);
  if (text.find_first_not_of(' ') != std::string_view::npos) return std::nullopt;
  return record;
}

std::optional<ShellRecord> readShellRecord(const std::filesystem::path& runtimeFolder, std::string_view tty) {
  const std::string name = fileNameOf(tty);
  if (name.empty()) return std::nullopt;
  const FileDescriptor folder(
      ::open((runtimeFolder / shellRecordFolder).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder || !isSafe(folder, S_IFDIR)) return std::nullopt;
  const FileDescriptor file(
      ::openat(folder.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file || !isSafe(file, S_IFREG)) return std::nullopt;
  std::array<char, longestRecord + 1> bytes{};
  const ssize_t count = ::read(file.get(), bytes.data(), bytes.size());
  if (count < 1 || static_cast<std::size_t>(count) > longestRecord) return std::nullopt;
  return parseShellRecord({bytes.data(), static_cast<std::size_t>(count)});
}

}  // namespace velmora
