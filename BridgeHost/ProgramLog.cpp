#include "BridgeHost/ProgramLog.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <utility>

#include "System/FileDescriptor.h"
#include "System/Mutex.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

/// With what stands before them, less than the 4,096 bytes that a pipe on Linux takes whole and at once.
constexpr std::size_t mostBytes = 3'000;

struct Level {
  std::string_view name;
  std::string_view priority;  ///< Of syslog, as sd-daemon(3) has it at the start of a line.
  std::string_view colour;
};

/// From `info` on: lines of the level before are not shown.
constexpr std::array levels{Level{"info", "<6>", "\033[32m"}, Level{"warning", "<4>", "\033[33m\033[1m"},
                            Level{"error", "<3>", "\033[31m\033[1m"}};

/// "2026-11-22 09:14:07.250", in local time.
std::string timeStamp() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  const auto seconds = static_cast<std::time_t>(milliseconds / 1'000);
  std::tm local{};
  ::localtime_r(&seconds, &local);
  std::array<char, 32> text{};
  const auto size = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  const auto rest = std::to_string(1'000 + milliseconds % 1'000);
  return std::string(text.data(), size) + "." + rest.substr(1);
}

/// The terminal that standard error is, opened anew: a write to one whose output is stopped must not wait,
/// and the flags of the descriptor itself belong to whoever else has it open too, such as the user's shell.
/// Nothing where it is none, or another user's.
FileDescriptor ownTerminal() {
  std::array<char, 256> name{};
  if (::ttyname_r(STDERR_FILENO, name.data(), name.size()) != 0) return {};
  return FileDescriptor(::open(name.data(), O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
}

/// Thread-safe.
class StandardError {
 public:
  StandardError(bool journal, bool colours) : journal_(journal), colours_(colours) {}

  void say(LogLevel level, std::string_view area, std::string_view words) {
    const MutexLock lock(mutex_);
    finish();
    const std::string count = "left out since nobody read: " + std::to_string(leftOut_) + " lines";
    if (leftOut_ > 0 && begin(lineOf(LogLevel::warning, "log", count))) leftOut_ = 0;
    if (leftOut_ > 0 || !begin(lineOf(level, area, words))) ++leftOut_;
  }

 private:
  /// False when nothing of the line was written, since nobody reads. What is begun is finished before the
  /// next.
  bool begin(std::string line) VELMORA_REQUIRES(mutex_) {
    if (!unfinished_.empty()) return false;
    unfinished_ = std::move(line);
    const std::size_t size = unfinished_.size();
    finish();
    if (unfinished_.size() < size) return true;
    unfinished_.clear();
    return false;
  }

  void finish() VELMORA_REQUIRES(mutex_) {
    while (!unfinished_.empty() && hasRoom()) {
      const ssize_t count =
          ::write(descriptor(), unfinished_.data(), std::min<std::size_t>(unfinished_.size(), PIPE_BUF));
      if (count >= 0) {
        unfinished_.erase(0, static_cast<std::size_t>(count));
      } else if (errno == EAGAIN) {
        return;
      } else if (errno != EINTR) {
        unfinished_.clear();  // what cannot be written at all is nobody's concern
      }
    }
  }

  /// Whether a write of PIPE_BUF bytes to a pipe returns at once.
  bool hasRoom() const {
    pollfd watched{.fd = descriptor(), .events = POLLOUT, .revents = 0};
    return ::poll(&watched, 1, /*timeout=*/0) != 0;  // also when the system cannot tell
  }
  int descriptor() const { return terminal_ ? terminal_.get() : STDERR_FILENO; }

  std::string lineOf(LogLevel level, std::string_view area, std::string_view words) const {
    const Level& shown = levels.at(static_cast<std::size_t>(level) - 1);
    std::string line;
    if (journal_) {
      line = shown.priority;
    } else {
      line = timeStamp() + " ";
      if (colours_) line += shown.colour;
      line += shown.name;
      line += colours_ ? "\033[m " : " ";
    }
    line.append(area).append(": ").append(firstBytes(words, mostBytes));
    return line += '\n';
  }

  const bool journal_;
  const bool colours_;
  const FileDescriptor terminal_ = ownTerminal();
  Mutex mutex_;
  std::size_t leftOut_ VELMORA_GUARDED_BY(mutex_) = 0;
  std::string unfinished_ VELMORA_GUARDED_BY(mutex_);  // the rest of a line that is begun
};

bool showsColours(const Environment& environment, int descriptor) {
  const auto terminal = environmentValue(environment, "TERM");
  return ::isatty(descriptor) == 1 && !terminal.empty() && terminal != "dumb";
}

}  // namespace

Log programLog(const Environment& environment) {
  const auto place = std::make_shared<StandardError>(isJournal(environment, STDERR_FILENO),
                                                     showsColours(environment, STDERR_FILENO));
  return Log([place](LogLevel level, std::string_view area, std::string_view words) {
    if (level != LogLevel::debug) place->say(level, area, words);
  });
}

bool isJournal(const Environment& environment, int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 &&
         environmentValue(environment, "JOURNAL_STREAM") ==
             std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

}  // namespace velmora
