#include "TerminalAutomation/Tmux/Direct/TmuxTrust.h"

#include <sys/stat.h>

#include <system_error>
#include <utility>

namespace velmora {

using Way = TmuxVerdict::Way;

std::optional<TmuxSocketStamp> tmuxSocketStamp(const std::filesystem::path& socket) {
  struct stat status {};
  std::error_code error;
  const auto made = std::filesystem::last_write_time(socket, error);
  if (error || lstat(socket.c_str(), &status) != 0) return std::nullopt;
  return TmuxSocketStamp{.device = static_cast<std::uint64_t>(status.st_dev),
                         .file = static_cast<std::uint64_t>(status.st_ino),
                         .made = made};
}

std::optional<TmuxVerdict> TmuxTrust::verdict(const TmuxSocketStamp& socket) {
  const MutexLock lock(mutex_);
  if (socket != socket_) {
    socket_ = socket;
    verdict_ = {};
    judging_ = false;
  }
  if (verdict_.way != Way::undecided) return verdict_;
  if (judging_) return TmuxVerdict{.way = Way::program};
  judging_ = true;
  return std::nullopt;
}

void TmuxTrust::settle(const TmuxSocketStamp& socket, TmuxVerdict verdict) {
  const MutexLock lock(mutex_);
  if (socket != socket_) return;
  judging_ = false;
  // A call may have met something unexpected meanwhile.
  if (verdict_.way == Way::program || verdict.way == Way::refused) return;
  verdict_ = std::move(verdict);
}

bool TmuxTrust::distrust(const TmuxSocketStamp& socket, const std::string& reason) {
  const MutexLock lock(mutex_);
  if (socket != socket_ || verdict_.way == Way::program) return false;
  verdict_ = {.way = Way::program, .reason = reason};
  return true;
}

bool TmuxTrust::isDirect() const {
  const MutexLock lock(mutex_);
  return verdict_.way == Way::direct;
}

std::optional<std::string> TmuxTrust::reason() const {
  const MutexLock lock(mutex_);
  if (verdict_.way != Way::program) return std::nullopt;
  return verdict_.reason;
}

}  // namespace velmora
