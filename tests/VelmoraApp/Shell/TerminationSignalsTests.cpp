#include <csignal>

#include "VelmoraApp/Shell/TerminationSignals.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

TEST(TerminationSignals, EndTheEventLoopRatherThanTheProcess) {
  const TerminationSignals signals;
  int received = 0;
  QObject::connect(&signals, &TerminationSignals::received, &signals, [&] { ++received; });
  std::raise(SIGTERM);
  std::raise(SIGINT);
  EXPECT_TRUE(testing::spinUntil([&] { return received == 2; }));
}

TEST(TerminationSignals, APeerThatLeavesEndsNothing) {
  const TerminationSignals signals;
  std::raise(SIGPIPE);
}

}  // namespace
}  // namespace velmora
