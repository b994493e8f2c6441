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
  std::raise(SIGHUP);
  EXPECT_TRUE(testing::spinUntil([&] { return received == 3; }));
}

TEST(TerminationSignals, OneSignalAsksForAPauseAndEndsNothing) {
  const TerminationSignals signals;
  int asked = 0;
  int received = 0;
  QObject::connect(&signals, &TerminationSignals::pauseAsked, &signals, [&] { ++asked; });
  QObject::connect(&signals, &TerminationSignals::received, &signals, [&] { ++received; });
  std::raise(SIGUSR1);
  std::raise(SIGTERM);
  EXPECT_TRUE(testing::spinUntil([&] { return received == 1; }));
  EXPECT_EQ(asked, 1);
}

TEST(TerminationSignals, AHangUpThatWasIgnoredStaysSo) {
  std::signal(SIGHUP, SIG_IGN);
  const TerminationSignals signals;
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST(TerminationSignals, APeerThatLeavesEndsNothing) {
  const TerminationSignals signals;
  std::raise(SIGPIPE);
}

}  // namespace
}  // namespace velmora
