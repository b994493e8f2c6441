// The application's model over a bridge whose terminal is a fake, in a temporary home. The poll's timer
// rests; tests poll themselves.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QTimer>
#include <functional>
#include <memory>

#include "BridgeModels/Json/JsonEncoding.h"
#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora::testing {

/// Lets the event loop work until `condition` holds; false when it does not within the deadline.
inline bool spinUntil(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(patience);
  QTimer wake;
  wake.start(std::chrono::milliseconds(5));
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

/// Counts how often a signal is emitted.
template <class Sender, class Signal>
std::shared_ptr<int> countOf(Sender& sender, Signal signal) {
  auto count = std::make_shared<int>(0);
  QObject::connect(&sender, signal, &sender, [count] { ++*count; });
  return count;
}

class AppFixture : public ::testing::Test {
 protected:
  AppFixture() {
    auto fake = std::make_unique<FakeTerminal>();
    terminal = fake.get();
    terminal->tabs = {tab("/dev/ttys001", 11), tab("/dev/ttys002", 12, 2)};
    // The options hold a copyable function, which is called once.
    auto holder = std::make_shared<std::unique_ptr<FakeTerminal>>(std::move(fake));
    options = {.bridge = {.environment = {{"HOME", directory.path().string()},
                                          {"XDG_DATA_HOME", (directory / "data").string()},
                                          {"XDG_RUNTIME_DIR", directory.path().string()}},
                          .makeTerminal = [holder](const auto&) { return std::move(*holder); },
                          .now = time.clock(),
                          .uuid = countingUuids()},
               .permissionPrompter = prompterThatNotes(),
               .onboardingCompleted = true,
               .pollInterval = std::chrono::hours(1)};
  }

  /// Makes the model and waits until the start-up task has refreshed everything.
  AppModel& startApp() {
    app = std::make_unique<AppModel>(options);
    EXPECT_TRUE(spinUntil([this] { return hasRefreshed(1); }));
    return *app;
  }

  /// Whether `count` refreshes have left their records, and the last has been published.
  bool hasRefreshed(std::size_t count) {
    std::size_t published = 0;
    for (const auto& record : app->records()) {
      published += record.toolName == ToolName::status && record.client.name == "Velmora.app" &&
                   record.completedAt.has_value();
    }
    return published >= count && !app->isRefreshing();
  }
  std::size_t refreshes() const { return terminal->callCount("listSessions"); }

  /// Runs `action` and waits until the refresh that it ends with is published.
  void andRefresh(const std::function<void()>& action) {
    const auto finished = countOf(*app, &AppModel::refreshingChanged);
    action();
    ASSERT_TRUE(spinUntil([&] { return *finished >= 2 && !app->isRefreshing(); }));
    pollRecords();
  }

  /// Waits until what the recorder has is published.
  void pollRecords() {
    app->poll();
    ASSERT_TRUE(spinUntil([this] { return app->records() == app->coordinator().recorder().snapshot(); }));
  }

  /// A call as a client makes it.
  auto sendCommand(const std::string& command) {
    return app->coordinator().sendCommand(options.bridge.uuid(), {"a client", "2.0"},
                                          {app->sessions().at(0).sessionId, command});
  }

  void writeSettings(const PrivacyRetentionSettings& settings) {
    writeFile(settingsFile(), R"({"schemaVersion":1,"settings":)" + encodeJson(settings) + "}");
  }
  std::filesystem::path settingsFile() const { return directory / "data/Velmora/settings.json"; }
  std::filesystem::path historyFile() const { return directory / "data/Velmora/history.json"; }

  TemporaryDirectory directory;
  FakeTime time{800000000};
  FakeTerminal* terminal = nullptr;  // the bridge's; usable while the bridge lives
  std::vector<std::string> prompts;
  AppModelOptions options;
  std::unique_ptr<AppModel> app;

 private:
  StartupPermissionPrompter prompterThatNotes() {
    return {.requestAccessibility = [this] { return prompts.push_back("accessibility"), true; },
            .requestScreenCapture = [this] { return prompts.push_back("screen capture"), false; },
            .requestTerminalAutomation = [this](TerminalAutomating&) { prompts.push_back("terminal"); },
            .requestSystemEventsAutomation = [this](TerminalAutomating&) { prompts.push_back("events"); }};
  }
};

}  // namespace velmora::testing
