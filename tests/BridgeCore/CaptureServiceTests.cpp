#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/Reading.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::structuredError;

class CaptureServiceTest : public testing::CoreFixture {
 protected:
  CaptureService service{terminal, sessions, permissions, time.clock()};
};

TEST_F(CaptureServiceTest, ReturnsThePathOfThePicture) {
  const auto id = registerTab(SessionPermission::readOnly);
  EXPECT_EQ(service.capture({id}), CapturePayload(id, "/tmp/picture.png", time.now()));
  EXPECT_EQ(terminal.calls().back(), "captureScreen(/dev/ttys001, 11)");
}

TEST_F(CaptureServiceTest, RefusesBlockedSessions) {
  const auto id = registerTab(SessionPermission::blocked);
  EXPECT_EQ(structuredError([&] { service.capture({id}); }),
            catalogue::sessionNotAllowed("terminal_capture_screen", registry.session(id).reference()));
  EXPECT_EQ(terminal.callCount("captureScreen"), 0u);
}

TEST_F(CaptureServiceTest, AFailedCaptureIsAnUnavailablePicture) {
  const auto id = registerTab();
  terminal.failWith("captureScreen", PlatformError("d", -1743));
  EXPECT_EQ(structuredError([&] { service.capture({id}); }),
            catalogue::screenCaptureUnavailable(registry.session(id).reference()));
  const auto own = catalogue::mcpPaused("x", registry.session(id).reference());
  terminal.failWith("captureScreen", own);
  EXPECT_EQ(structuredError([&] { service.capture({id}); }), own);
}

}  // namespace
}  // namespace velmora
