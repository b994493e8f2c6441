#include <gtest/gtest.h>

#include <cerrno>

#include "LocalControl/UnixSocketServer.h"
#include "VelmoraHelper/Bridge/BridgeContact.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class BridgeContactTest : public ::testing::Test {
 protected:
  std::optional<UnixSocketError> failure() const {
    return errorOf<UnixSocketError>([&] { contactBridge(places); });
  }

  TemporaryDirectory directory;
  const std::vector<std::filesystem::path> places{directory / "first", directory / "second",
                                                  directory / "third"};
};

TEST_F(BridgeContactTest, TakesTheFirstPlaceAtWhichSomebodyListens) {
  const UnixSocketServer third(places[2]);
  EXPECT_EQ(contactBridge(places).socketURL, places[2]);
  std::ofstream(places[0]) << "no socket";
  const UnixSocketServer second(places[1]);
  EXPECT_EQ(contactBridge(places).socketURL, places[1]);
}

TEST_F(BridgeContactTest, ReportsWhatTheFirstPlaceGaveWhenNobodyListens) {
  std::ofstream(places[1]) << "no socket";
  EXPECT_EQ(failure(), UnixSocketError::system("connect", ENOENT));
}

TEST_F(BridgeContactTest, DoesNotPassOverOneWhoseQueueIsFull) {
  const UnixSocketServer second(places[1]);
  const UnixSocketServer third(places[2]);
  std::vector<BridgeContact> waiting;
  while (!failure() && contactBridge(places).socketURL == places[1]) waiting.push_back(contactBridge(places));
  EXPECT_EQ(failure(), UnixSocketError::system("connect", EAGAIN));
}

}  // namespace
}  // namespace velmora
