#include "System/ServiceManager.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>

#include "System/FileDescriptor.h"

namespace velmora {

void tellServiceIsReady(const Environment& environment) {
  constexpr std::string_view state = "READY=1";
  const auto fail = [](int error) {
    throw std::system_error(error, std::generic_category(), "the service manager cannot be told");
  };
  const std::string place = environmentValue(environment, "NOTIFY_SOCKET");
  if (place.empty()) return;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (place.size() >= sizeof address.sun_path) fail(ENAMETOOLONG);
  place.copy(address.sun_path, place.size());
  if (place[0] == '@') address.sun_path[0] = '\0';  // a name that is no file
  const FileDescriptor sender(::socket(AF_UNIX, SOCK_DGRAM, 0));
  if (!sender || ::fcntl(sender.get(), F_SETFD, FD_CLOEXEC) != 0) fail(errno);
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + place.size());
  if (::sendto(sender.get(), state.data(), state.size(), MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&address),
               length) < 0)
    fail(errno);
}

}  // namespace velmora
