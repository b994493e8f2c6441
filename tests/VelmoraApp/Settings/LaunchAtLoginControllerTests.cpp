#include <gtest/gtest.h>

#include <QtTest/QSignalSpy>

#include "VelmoraApp/Settings/LaunchAtLoginController.h"
#include "tests/VelmoraApp/FakeDesktop.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

const QString kRefusal = "Login item could not be changed. Review Login Items in System Settings.";

class LaunchAtLoginControllerTest : public ::testing::Test {
 protected:
  LaunchAtLoginController& controller() {
    if (!controller_) controller_.emplace(desktop);
    return *controller_;
  }

  const TemporaryDirectory home;
  testing::FakeDesktop desktop{QString::fromStdString((home / "defaults.ini").string())};

 private:
  std::optional<LaunchAtLoginController> controller_;
};

TEST_F(LaunchAtLoginControllerTest, ShowsAtFirstWhatTheSystemSays) {
  desktop.isLoginItem = true;
  EXPECT_TRUE(controller().enabled());
  EXPECT_EQ(controller().errorMessage(), "");
}

TEST_F(LaunchAtLoginControllerTest, EnablesAndDisables) {
  const QSignalSpy changes(&controller(), &LaunchAtLoginController::enabledChanged);
  controller().setEnabled(true);
  EXPECT_TRUE(desktop.isLoginItem);
  EXPECT_TRUE(controller().enabled());
  controller().setEnabled(false);
  EXPECT_FALSE(desktop.isLoginItem);
  EXPECT_FALSE(controller().enabled());
  EXPECT_EQ(changes.count(), 2);
}

TEST_F(LaunchAtLoginControllerTest, ShowsWhatTheSystemSaysAfterASuccessNotWhatWasAskedFor) {
  desktop.ignoresLoginItem = true;  // as while the user's approval is awaited
  const QSignalSpy changes(&controller(), &LaunchAtLoginController::enabledChanged);
  controller().setEnabled(true);
  EXPECT_FALSE(controller().enabled());
  EXPECT_EQ(controller().errorMessage(), "");
  EXPECT_EQ(changes.count(), 1);
}

TEST_F(LaunchAtLoginControllerTest, AFailureKeepsTheValueSaysWhatToDoAndTurnsTheSwitchBack) {
  desktop.isLoginItem = desktop.refusesLoginItem = true;
  const QSignalSpy changes(&controller(), &LaunchAtLoginController::enabledChanged);
  const QSignalSpy messages(&controller(), &LaunchAtLoginController::errorMessageChanged);
  desktop.isLoginItem = false;  // meanwhile; a failed call does not look
  controller().setEnabled(false);
  EXPECT_TRUE(controller().enabled());
  EXPECT_EQ(controller().errorMessage(), kRefusal);
  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(messages.count(), 1);
}

TEST_F(LaunchAtLoginControllerTest, ASuccessClearsTheMessage) {
  desktop.refusesLoginItem = true;
  controller().setEnabled(true);
  EXPECT_EQ(controller().errorMessage(), kRefusal);
  desktop.refusesLoginItem = false;
  controller().setEnabled(true);
  EXPECT_EQ(controller().errorMessage(), "");
  EXPECT_TRUE(controller().enabled());
}

}  // namespace
}  // namespace velmora
