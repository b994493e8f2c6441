#include "VelmoraHelper/Commands/TmuxServers.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <system_error>

#include "System/SocketPlatform.h"

namespace velmora {

namespace {

bool answers(const std::filesystem::path& socket) {
  const auto connection = SocketPlatform::openStreamSocket();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (!connection || socket.native().size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, socket.c_str(), socket.native().size());
  setNonBlocking(connection);
  const auto* const place = reinterpret_cast<const sockaddr*>(&address);
  return ::connect(connection.get(), place, sizeof address) == 0 || errno == EAGAIN || errno == EINPROGRESS;
}

std::string listed(const std::vector<std::filesystem::path>& servers) {
  std::string names;
  for (const auto& server : servers) names += (names.empty() ? "" : ", ") + server.string();
  return names;
}

}  // namespace

std::vector<std::filesystem::path> answeringTmuxServers(const Environment& environment, uid_t user,
                                                        const std::filesystem::path& socketOfBridge) {
  const auto named = environmentPath(environment, "TMUX_TMPDIR");
  const std::set<std::filesystem::path> folders{
      (named.empty() ? "/tmp" : named) / ("tmux-" + std::to_string(user)), socketOfBridge.parent_path()};
  std::vector<std::filesystem::path> servers;
  for (const auto& folder : folders) {
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder, none)) {
      if (entry.is_socket(none) && answers(entry.path())) servers.push_back(entry.path());
    }
  }
  std::sort(servers.begin(), servers.end());
  return servers;
}

Check checkTmuxServers(const std::filesystem::path& socketOfBridge,
                       const std::vector<std::filesystem::path>& servers) {
  constexpr const char* name = "tmux socket";
  auto others = servers;
  const bool isThere = std::erase(others, socketOfBridge) > 0;
  auto finding = "the bridge looks at " + socketOfBridge.string();
  if (others.empty()) return Check::passed(name, std::move(finding));
  if (isThere) return Check::passed(name, finding + "; not used by Velmora: " + listed(others));
  return Check::failed(name, finding + ", where no server is; there is one at " + listed(others),
                       "Set \"tmuxSocket\": \"" + others.front().string() +
                           "\" in settings.json, or this path under General in the window's settings, and "
                           "restart Velmora; or work in `tmux` without -L and -S.");
}

}  // namespace velmora
