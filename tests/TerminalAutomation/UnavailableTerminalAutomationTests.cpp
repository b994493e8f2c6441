#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "TerminalAutomation/Unavailable/UnavailableTerminalAutomation.h"

namespace velmora {
namespace {

constexpr auto noDeadline = TerminalOperations::Deadline::max();

TEST(UnavailableTerminalAutomation, SaysThatNoTerminalRuns) {
  EXPECT_EQ(UnavailableTerminalAutomation().status(noDeadline), TerminalRuntimeStatus{});
}

TEST(UnavailableTerminalAutomation, FailsEverythingElse) {
  UnavailableTerminalAutomation terminal;
  for (const auto& call : std::vector<std::function<void()>>{
           [&] { terminal.listSessions(noDeadline); }, [&] { terminal.createWindow(noDeadline); },
           [&] { terminal.sendCommand("ls", {}, true, noDeadline); },
           [&] { terminal.sendKey(TerminalKey::tab, 1, {}, true, noDeadline); },
           [&] { terminal.readOutput(OutputSource::visible, 1, {}, noDeadline); },
           [&] { terminal.captureScreen({}, noDeadline); }, [&] { terminal.focus({}, noDeadline); }}) {
    try {
      call();
      ADD_FAILURE() << "nothing was thrown";
    } catch (const PlatformError& error) {
      EXPECT_EQ(error.domain(), "Velmora.Automation");
      EXPECT_EQ(error.code(), -2700);
      EXPECT_STREQ(error.what(), "");
    }
  }
}

}  // namespace
}  // namespace velmora
