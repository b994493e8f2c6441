#include "TerminalAutomation/Tmux/TmuxSocket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <system_error>

namespace velmora {

std::filesystem::path chooseTmuxSocket(const std::optional<std::filesystem::path>& configured,
                                       const Environment& environment) {
  if (configured) return *configured;
  // "socket path,server pid,session": set when the bridge itself runs inside tmux.
  const std::string inside = environmentValue(environment, "TMUX");
  if (inside.starts_with('/')) return inside.substr(0, inside.find(','));
  std::filesystem::path base;
  std::error_code error;
  const std::string named = environmentValue(environment, "TMUX_TMPDIR");
  if (!named.empty()) base = std::filesystem::canonical(named, error);
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
