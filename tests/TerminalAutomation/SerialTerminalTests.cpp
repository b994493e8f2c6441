#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <latch>
#include <map>

#include "BridgeModels/StructuredError.h"
#include "TerminalAutomation/SerialTerminal.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::structuredError;

/// An adapter whose calls do what the test says, and that notes the deadline of each.
class ScriptedOperations final : public TerminalOperations {
 public:
  struct State {
    bool serial = false;
    std::function<void(const std::string& call)> during = [](const std::string&) {};
    Mutex mutex;
    std::vector<std::string> calls;
    std::map<std::string, Deadline> deadlines;
    bool cancelled = false;
  };

  explicit ScriptedOperations(State& state) : state_(state) {}

  std::string displayName() const override { return "scripted"; }
  bool isSerial() const override { return state_.serial; }
  TerminalRuntimeStatus status(Deadline deadline) override {
    note("status", deadline);
    return {.running = true, .windowCount = 7};
  }
  std::vector<TerminalTabSnapshot> listSessions(Deadline deadline) override {
    note("listSessions", deadline);
    return {{.tty = "/dev/a"}};
  }
  std::vector<TerminalTabSnapshot> listTab(const std::string& tty, Deadline deadline) override {
    note("listTab " + tty, deadline);
    return {{.tty = tty}};
  }
  TerminalTabSnapshot createWindow(Deadline deadline) override {
    note("createWindow", deadline);
    return {.tty = "/dev/b"};
  }
  void sendCommand(const std::string& command, const TabAddress& tab, bool allowBusy,
                   Deadline deadline) override {
    note("sendCommand " + command + " " + textOf(tab) + (allowBusy ? " busy" : ""), deadline);
  }
  void sendKey(TerminalKey key, std::int64_t repeatCount, const TabAddress& tab, bool allowBusy,
               Deadline deadline) override {
    note("sendKey " + std::string(wireName(key)) + " " + std::to_string(repeatCount) + " " + textOf(tab) +
             (allowBusy ? " busy" : ""),
         deadline);
  }
  TerminalOutput readOutput(OutputSource source, std::int64_t maxCharacters, const TabAddress& tab,
                            Deadline deadline) override {
    note("readOutput " + std::string(wireName(source)) + " " + std::to_string(maxCharacters) + " " +
             textOf(tab),
         deadline);
    return {.text = "text"};
  }
  TerminalScreenCapture captureScreen(const TabAddress& tab, Deadline deadline) override {
    note("captureScreen " + textOf(tab), deadline);
    return {.imagePath = "/picture"};
  }
  void focus(const TabAddress& tab, Deadline deadline) override { note("focus " + textOf(tab), deadline); }
  void cancel() noexcept override { state_.cancelled = true; }

 private:
  static std::string textOf(const TabAddress& tab) { return tab.tty + "@" + std::to_string(tab.windowId); }

  void note(const std::string& call, Deadline deadline) {
    {
      const MutexLock lock(state_.mutex);
      state_.calls.push_back(call);
      state_.deadlines[call.substr(0, call.find(' '))] = deadline;
    }
    state_.during(call);
  }

  State& state_;
};

class SerialTerminalTest : public ::testing::Test {
 protected:
  SerialTerminal& terminal() {
    if (!terminal_) {
      terminal_ = std::make_unique<SerialTerminal>(std::make_unique<ScriptedOperations>(state_), deadlines_);
    }
    return *terminal_;
  }

  /// Makes the calls that `holds` names wait until `open` is counted down.
  void hold(const std::string& holds, std::latch& entered, std::latch& open) {
    state_.during = [&entered, &open, holds](const std::string& call) {
      if (!call.starts_with(holds)) return;
      entered.count_down();
      open.wait();
    };
  }

  ScriptedOperations::State state_;
  TerminalDeadlines deadlines_;
  std::unique_ptr<SerialTerminal> terminal_;
};

TEST_F(SerialTerminalTest, PassesEveryCallOnAndItsResultBack) {
  EXPECT_EQ(terminal().displayName(), "scripted");
  EXPECT_EQ(terminal().status().get().windowCount, 7);
  EXPECT_EQ(terminal().listSessions().get().front().tty, "/dev/a");
  EXPECT_EQ(terminal().createWindow().get().tty, "/dev/b");
  terminal().send("ls", "/dev/a", 4).get();
  terminal().send("ls", "/dev/a", 4, true).get();
  terminal().send(TerminalKey::tab, 3, "/dev/a", 4).get();
  terminal().send(TerminalKey::tab, 3, "/dev/a", 4, true).get();
  EXPECT_EQ(terminal().readOutput(OutputSource::history, 9, "/dev/a", 4).get().text, "text");
  EXPECT_EQ(terminal().captureScreen("/dev/a", 4).get().imagePath, "/picture");
  terminal().focus("/dev/a", 4).get();
  EXPECT_EQ(state_.calls,
            (std::vector<std::string>{"status", "listSessions", "createWindow", "sendCommand ls /dev/a@4",
                                      "sendCommand ls /dev/a@4 busy", "sendKey tab 3 /dev/a@4",
                                      "sendKey tab 3 /dev/a@4 busy", "readOutput history 9 /dev/a@4",
                                      "captureScreen /dev/a@4", "focus /dev/a@4"}));
}

TEST_F(SerialTerminalTest, FailuresArriveThroughTheFuture) {
  state_.during = [](const std::string&) { throw PlatformError("d", -600); };
  auto listed = terminal().listSessions();
  EXPECT_THROW(listed.get(), PlatformError);
  auto focused = terminal().focus("/dev/a", 1);
  EXPECT_THROW(focused.get(), PlatformError);
}

TEST_F(SerialTerminalTest, AnAdapterThatCannotPressKeysSaysSo) {
  class Keyless : public TerminalOperations {
    std::string displayName() const override { return "keyless"; }
    TerminalRuntimeStatus status(Deadline) override { return {}; }
    std::vector<TerminalTabSnapshot> listSessions(Deadline) override { return {}; }
    TerminalTabSnapshot createWindow(Deadline) override { return {}; }
    void sendCommand(const std::string&, const TabAddress&, bool, Deadline) override {}
    TerminalOutput readOutput(OutputSource, std::int64_t, const TabAddress&, Deadline) override { return {}; }
    TerminalScreenCapture captureScreen(const TabAddress&, Deadline) override { return {}; }
    void focus(const TabAddress&, Deadline) override {}
  };
  SerialTerminal keyless(std::make_unique<Keyless>());
  try {
    keyless.send(TerminalKey::tab, 1, "/dev/a", 1).get();
    FAIL() << "nothing was thrown";
  } catch (const PlatformError& error) {
    EXPECT_EQ(error.domain(), "Velmora.Automation");
    EXPECT_EQ(error.code(), -1708);
    EXPECT_STREQ(error.what(), "Special key input is not supported by this automation adapter.");
  }
}

TEST_F(SerialTerminalTest, BeginsNothingForACallerWhoHasLeft) {
  std::latch entered(1);
  std::latch open(1);
  hold("createWindow", entered, open);
  auto holding = terminal().createWindow();
  entered.wait();

  std::atomic<bool> left = false;
  const Caller caller{.hasLeft = [&left] { return left.load(); }};
  auto sent = terminal().send("ls", "/dev/a", 4, false, caller);
  auto pressed = terminal().send(TerminalKey::tab, 1, "/dev/a", 4, false, caller);
  auto focused = terminal().focus("/dev/a", 4, caller);
  auto created = terminal().createWindow(caller);
  left = true;
  open.count_down();
  for (auto* refused : {&sent, &pressed, &focused}) EXPECT_THROW(refused->get(), StructuredError);
  EXPECT_THROW(created.get(), StructuredError);
  EXPECT_EQ(state_.calls, (std::vector<std::string>{"createWindow"}));
}

TEST_F(SerialTerminalTest, TheDeadlineCountsFromTheArrivalOfWhatItIsFor) {
  const Caller caller{.since = steady_clock::now() - 3s};
  terminal().send("ls", "/dev/a", 4, false, caller).get();
  EXPECT_EQ(state_.deadlines.at("sendCommand"), caller.since + deadlines_.operation);
}

TEST_F(SerialTerminalTest, TheDeadlineOfEveryCallCountsFromTheCall) {
  deadlines_ = {.operation = 100s, .history = 1000s, .status = 200s};
  std::latch entered(1);
  std::latch open(1);
  state_.serial = true;  // one queue, so that every call waits behind the first
  hold("createWindow", entered, open);
  auto holding = terminal().createWindow();
  entered.wait();

  const auto before = steady_clock::now();
  auto status = terminal().status();
  auto listed = terminal().listSessions();
  auto sent = terminal().send("ls", "/dev/a", 4);
  auto pressed = terminal().send(TerminalKey::tab, 1, "/dev/a", 4);
  auto read = terminal().readOutput(OutputSource::visible, 9, "/dev/a", 4);
  auto captured = terminal().captureScreen("/dev/a", 4);
  auto focused = terminal().focus("/dev/a", 4);
  const auto after = steady_clock::now();
  open.count_down();
  focused.get();
  const auto counts = [&](const std::string& call, std::chrono::seconds allowed) {
    EXPECT_GE(state_.deadlines.at(call), before + allowed) << call;
    EXPECT_LE(state_.deadlines.at(call), after + allowed) << call;
  };
  counts("status", 200s);
  for (const auto* call :
       {"listSessions", "sendCommand", "sendKey", "readOutput", "captureScreen", "focus"}) {
    counts(call, 100s);
  }
  EXPECT_GE(terminal().readOutput(OutputSource::history, 9, "/dev/a", 4).get().text, "");
  EXPECT_GE(state_.deadlines.at("readOutput"), before + 1000s);
}

TEST_F(SerialTerminalTest, ALongReadHoldsNobodyUp) {
  std::latch entered(1);
  std::latch open(1);
  hold("readOutput history", entered, open);
  auto reading = terminal().readOutput(OutputSource::history, 9, "/dev/a", 4);
  entered.wait();
  EXPECT_TRUE(terminal().status().get().running);
  EXPECT_EQ(terminal().listSessions().get().size(), 1u);
  terminal().send("ls", "/dev/a", 4).get();
  EXPECT_EQ(terminal().readOutput(OutputSource::visible, 9, "/dev/a", 4).get().text, "text");
  EXPECT_EQ(terminal().captureScreen("/dev/a", 4).get().imagePath, "/picture");
  EXPECT_EQ(reading.wait_for(0s), std::future_status::timeout);
  open.count_down();
  reading.get();
}

TEST_F(SerialTerminalTest, HugePicturesHoldUpPicturesAndNothingElse) {
  std::latch entered(1);
  std::latch open(1);
  hold("captureScreen /dev/huge", entered, open);
  std::vector<std::future<TerminalScreenCapture>> huge;
  for (int count = 0; count < 6; ++count) huge.push_back(terminal().captureScreen("/dev/huge", 4));
  entered.wait();
  auto reading = terminal().readOutput(OutputSource::visible, 9, "/dev/a", 4);
  auto sending = terminal().send("ls", "/dev/a", 4);
  auto listing = terminal().listSessions();
  EXPECT_EQ(reading.wait_for(20s), std::future_status::ready);
  EXPECT_EQ(sending.wait_for(20s), std::future_status::ready);
  EXPECT_EQ(listing.wait_for(20s), std::future_status::ready);
  open.count_down();
  for (auto& picture : huge) picture.get();
}

TEST_F(SerialTerminalTest, AChangeThatHangsHoldsUpChangesAndNoReads) {
  std::latch entered(1);
  std::latch open(1);
  hold("createWindow", entered, open);
  auto creating = terminal().createWindow();
  entered.wait();
  auto sending = terminal().send("ls", "/dev/a", 4);
  EXPECT_EQ(terminal().listSessions().get().size(), 1u);
  EXPECT_TRUE(terminal().status().get().running);
  EXPECT_EQ(terminal().readOutput(OutputSource::history, 9, "/dev/a", 4).get().text, "text");
  EXPECT_EQ(sending.wait_for(0s), std::future_status::timeout);
  open.count_down();
  sending.get();
  EXPECT_EQ(state_.calls.back(), "sendCommand ls /dev/a@4");
}

TEST_F(SerialTerminalTest, ListingsNeverMeetAndKeepTheirOrder) {
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  state_.during = [&](const std::string&) {
    const int now = ++inside;
    if (now > most) most = now;
    std::this_thread::yield();
    --inside;
  };
  std::vector<std::future<std::vector<TerminalTabSnapshot>>> answers;
  for (int i = 0; i < 100; ++i) answers.push_back(terminal().listSessions());
  for (auto& answer : answers) answer.get();
  EXPECT_EQ(most, 1);
}

TEST_F(SerialTerminalTest, ListingsThatWaitTogetherAreTakenOnce) {
  std::latch entered(1);
  std::latch open(1);
  hold("status", entered, open);
  auto status = terminal().status();
  entered.wait();
  std::vector<std::future<std::vector<TerminalTabSnapshot>>> answers;
  for (int i = 0; i < 8; ++i) answers.push_back(terminal().listSessions());
  open.count_down();
  for (auto& answer : answers) EXPECT_EQ(answer.get().front().tty, "/dev/a");
  EXPECT_EQ(std::count(state_.calls.begin(), state_.calls.end(), "listSessions"), 1);
  EXPECT_EQ(terminal().listSessions().get().size(), 1u);
  EXPECT_EQ(std::count(state_.calls.begin(), state_.calls.end(), "listSessions"), 2) << "taken anew";
}

TEST_F(SerialTerminalTest, NobodyGetsAListingThatWasBegunBeforeTheyAsked) {
  std::latch entered(1);
  std::latch open(1);
  hold("listSessions", entered, open);
  auto early = terminal().listSessions();
  entered.wait();
  auto late = terminal().listSessions();
  auto later = terminal().listSessions();
  open.count_down();
  early.get();
  late.get();
  later.get();
  EXPECT_EQ(state_.calls, (std::vector<std::string>{"listSessions", "listSessions"}));
}

TEST_F(SerialTerminalTest, ALookAtOneTabKeepsItsPlaceAmongTheListings) {
  std::latch entered(1);
  std::latch open(1);
  hold("status", entered, open);
  auto status = terminal().status();
  entered.wait();
  auto before = terminal().listSessions();
  auto tab = terminal().listTab("/dev/a");
  auto after = terminal().listSessions();
  open.count_down();
  before.get();
  tab.get();
  after.get();
  EXPECT_EQ(state_.calls,
            (std::vector<std::string>{"status", "listSessions", "listTab /dev/a", "listSessions"}));
}

TEST_F(SerialTerminalTest, AListingThatFailsIsTakenAgainForTheNext) {
  std::latch entered(1);
  std::latch open(1);
  int listings = 0;
  state_.during = [&](const std::string& call) {
    if (call == "status") {
      entered.count_down();
      open.wait();
    } else if (++listings == 1) {
      throw PlatformError("d", -1);
    }
  };
  auto status = terminal().status();
  entered.wait();
  std::atomic<bool> left = true;
  auto gone = terminal().listSessions(Caller{.hasLeft = [&] { return left.load(); }});
  auto unlucky = terminal().listSessions();
  auto lucky = terminal().listSessions();
  auto other = terminal().listSessions();
  open.count_down();
  EXPECT_EQ(structuredError([&] { gone.get(); }).code, ErrorCode::bridgeUnavailable);
  EXPECT_THROW(unlucky.get(), PlatformError);
  EXPECT_EQ(lucky.get().size(), 1u);
  EXPECT_EQ(other.get().size(), 1u);
  EXPECT_EQ(listings, 2);
}

TEST_F(SerialTerminalTest, NoTwoCallsOfASerialAdapterMeet) {
  state_.serial = true;
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  state_.during = [&](const std::string&) {
    const int now = ++inside;
    if (now > most) most = now;
    std::this_thread::yield();
    --inside;
  };
  std::vector<std::future<void>> sent;
  std::vector<std::future<TerminalOutput>> read;
  for (int i = 0; i < 50; ++i) {
    sent.push_back(terminal().send("ls", "/dev/a", 4));
    read.push_back(terminal().readOutput(OutputSource::history, 9, "/dev/a", 4));
  }
  for (auto& answer : sent) answer.get();
  for (auto& answer : read) answer.get();
  EXPECT_EQ(most, 1);
}

TEST_F(SerialTerminalTest, CancellingAndDestructionReachTheAdapter) {
  terminal().cancel();
  EXPECT_TRUE(state_.cancelled);
  state_.cancelled = false;
  terminal_.reset();
  EXPECT_TRUE(state_.cancelled);
}

}  // namespace
}  // namespace velmora
