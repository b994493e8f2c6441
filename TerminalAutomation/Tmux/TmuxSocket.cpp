#include "TerminalAutomation/Tmux/TmuxSocket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <system_error>

namespace velmora {

std::filesystem::path chooseTmuxSocket(const std::optional<std::filesystem::path>& configured,
                                       const Environment& environment) {
  if (configured) return *configured;
  // "socket path,server pid,session": set when the bridge itself runs inside tmux.
  if (const auto inside = environment.find("TMUX"); inside != environment.end()) {
    const std::string path = inside->second.substr(0, inside->second.find(','));
    if (!path.empty() && path.front() == '/') return path;
  }
  std::filesystem::path base;
  std::error_code error;
  if (const auto named = environment.find("TMUX_TMPDIR");
      named != environment.end() && !named->second.empty()) {
    base = std::filesystem::canonical(named->second, error);
  }
  if (base.empty() || error) base = std::filesystem::canonical("/tmp", error);
  if (error) base = "/tmp";
  return base / ("tmux-" + std::to_string(geteuid())) / "default";
}

std::optional<std::string> tmuxSocketDefect(const std::filesystem::path& socket) {
  const std::filesystem::path folder = socket.parent_path();
  struct stat status {};
  if (lstat(folder.c_str(), &status) != 0) return std::nullopt;
  if (!S_ISDIR(status.st_mode)) return "The place of the tmux socket is not a folder: " + folder.string();
  if (status.st_uid != geteuid())
    return "The folder of the tmux socket belongs to another user: " + folder.string();
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    return "Other users may write to the folder of the tmux socket: " + folder.string();
  }
  if (lstat(socket.c_str(), &status) != 0) return std::nullopt;
  if (!S_ISSOCK(status.st_mode)) return "The tmux socket is not a socket: " + socket.string();
  if (status.st_uid != geteuid()) return "The tmux socket belongs to another user: " + socket.string();
  return std::nullopt;
}

void makeTmuxSocketFolder(const std::filesystem::path& socket) {
  mkdir(socket.parent_path().c_str(), S_IRWXU);
}

}  // namespace velmora
