#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/Reading.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::structuredError;

class OutputServiceTest : public testing::CoreFixture {
 protected:
  OutputService service{terminal, sessions, permissions};
};

TEST_F(OutputServiceTest, ReturnsWhatTheTabShows) {
  const auto id = registerTab();
  const auto reading = service.read({id, OutputSource::history, 100});
  EXPECT_EQ(reading.payload, (OutputPayload{id, OutputSource::history, "output", 6, false}));
  EXPECT_TRUE(reading.warnings.empty());
  EXPECT_EQ(terminal.calls().back(), "readOutput(history, 100, /dev/ttys001, 11)");
}

TEST_F(OutputServiceTest, CutsAgainAndWarnsOnce) {
  const auto id = registerTab();
  terminal.output = {"0123456789", OutputSource::visible, 10};
  const auto reading = service.read({id, OutputSource::visible, 4});
  EXPECT_EQ(reading.payload, (OutputPayload{id, OutputSource::visible, "6789", 4, true}));
  EXPECT_EQ(reading.warnings, std::vector{catalogue::outputTruncated("terminal_read_output",
                                                                     registry.session(id).reference())});
}

TEST_F(OutputServiceTest, BelievesTheAdapterAboutTheLengthOfTheWhole) {
  const auto id = registerTab();
  terminal.output = {"6789", OutputSource::visible, 10};
  const auto reading = service.read({id, OutputSource::visible, 4});
  EXPECT_EQ(reading.payload.returnedCharacters, 4);
  EXPECT_TRUE(reading.payload.truncated);
  EXPECT_EQ(reading.warnings.size(), 1u);
}

TEST_F(OutputServiceTest, ChecksTheRangeFirst) {
  for (const std::int64_t count : {0, 50001}) {
    EXPECT_THROW(service.read({Uuid{}, OutputSource::visible, count}), ToolValidationError);
  }
  const auto id = registerTab();
  for (const std::int64_t count : {1, 50000})
    EXPECT_NO_THROW(service.read({id, OutputSource::visible, count}));
}

TEST_F(OutputServiceTest, RefusesBlockedSessionsOnly) {
  const auto id = registerTab(SessionPermission::blocked);
  EXPECT_EQ(structuredError([&] { service.read({.sessionId = id}); }),
            catalogue::sessionNotAllowed("terminal_read_output", registry.session(id).reference()));
  registry.setPermission(SessionPermission::readOnly, id);
  EXPECT_NO_THROW(service.read({.sessionId = id}));
}

TEST_F(OutputServiceTest, AFailedReadIsUnavailableOutput) {
  const auto id = registerTab();
  for (const std::int64_t code : {-1743, -600, -1}) {
    terminal.failWith("readOutput", PlatformError("d", code));
    EXPECT_EQ(structuredError([&] { service.read({.sessionId = id}); }),
              catalogue::outputUnavailable(registry.session(id).reference()));
  }
  const auto own = catalogue::mcpPaused("x", registry.session(id).reference());
  terminal.failWith("readOutput", own);
  EXPECT_EQ(structuredError([&] { service.read({.sessionId = id}); }), own);
}

TEST_F(OutputServiceTest, AFailedListingPassesUnchanged) {
  const auto id = registerTab();
  terminal.failWith("listSessions", PlatformError("d", -600));
  EXPECT_THROW(service.read({.sessionId = id}), PlatformError);
}

}  // namespace
}  // namespace velmora
