#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <system_error>

#include "System/FileDescriptor.h"
#include "System/ServiceManager.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

// Stands for the service manager's socket.
class ServiceManager : public ::testing::Test {
 protected:
  // As NOTIFY_SOCKET has it: a path, or '@' and a name.
  void listenAt(const std::string& place) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    place.copy(address.sun_path, sizeof address.sun_path - 1);
    if (place[0] == '@') address.sun_path[0] = '\0';
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + place.size());
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<sockaddr*>(&address), length), 0);
  }
  // Without waiting; empty when nothing came.
  std::string heard() const {
    char text[64];
    const auto count = ::recv(socket.get(), text, sizeof text, MSG_DONTWAIT);
    return {text, count > 0 ? static_cast<std::size_t>(count) : 0};
  }

  TemporaryDirectory directory;
  FileDescriptor socket{::socket(AF_UNIX, SOCK_DGRAM, 0)};
};

TEST_F(ServiceManager, HearsThatTheServiceIsReady) {
  const auto place = (directory / "notify").string();
  listenAt(place);
  tellServiceIsReady({{"NOTIFY_SOCKET", place}});
  EXPECT_EQ(heard(), "READY=1");
}

TEST_F(ServiceManager, MayListenAtANameThatIsNoFile) {
  const auto place = "@velmora-test-" + std::to_string(::getpid());
  listenAt(place);
  tellServiceIsReady({{"NOTIFY_SOCKET", place}});
  EXPECT_EQ(heard(), "READY=1");
}

TEST_F(ServiceManager, IsNotLookedForWhereNoneIsNamed) {
  EXPECT_NO_THROW(tellServiceIsReady({}));
  EXPECT_NO_THROW(tellServiceIsReady({{"NOTIFY_SOCKET", ""}}));
}

TEST_F(ServiceManager, ThatCannotBeToldIsAnError) {
  EXPECT_THROW(tellServiceIsReady({{"NOTIFY_SOCKET", (directory / "nobody").string()}}), std::system_error);
  EXPECT_THROW(tellServiceIsReady({{"NOTIFY_SOCKET", "/" + std::string(200, 'x')}}), std::system_error);
}

}  // namespace
}  // namespace velmora
