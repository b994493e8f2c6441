#include <gtest/gtest.h>

#include <QtTest/QSignalSpy>
#include <stdexcept>

#include "VelmoraApp/LaunchAtLogin/LaunchAtLoginController.h"

namespace velmora {
namespace {

const QString kRefusal = "Login item could not be changed. Review Login Items in System Settings.";

struct FakeSystem {
  bool enabled = false;
  bool refuses = false;
  bool ignores = false;
};

class FakeLoginItem final : public LoginItem {
 public:
  explicit FakeLoginItem(FakeSystem& system) : system_(system) {}
  bool isEnabled() const override { return system_.enabled; }
  void setEnabled(bool enabled) override {
    if (system_.refuses) throw std::runtime_error("refused");
    if (!system_.ignores) system_.enabled = enabled;
  }

 private:
  FakeSystem& system_;
};

class LaunchAtLoginControllerTest : public ::testing::Test {
 protected:
  LaunchAtLoginController& controller() {
    if (!controller_) controller_.emplace(std::make_unique<FakeLoginItem>(system));
    return *controller_;
  }

  FakeSystem system;

 private:
  std::optional<LaunchAtLoginController> controller_;
};

TEST_F(LaunchAtLoginControllerTest, ShowsAtFirstWhatTheSystemSays) {
  system.enabled = true;
  EXPECT_TRUE(controller().enabled());
  EXPECT_EQ(controller().errorMessage(), "");
}

TEST_F(LaunchAtLoginControllerTest, EnablesAndDisables) {
  const QSignalSpy changes(&controller(), &LaunchAtLoginController::enabledChanged);
  controller().setEnabled(true);
  EXPECT_TRUE(system.enabled);
  EXPECT_TRUE(controller().enabled());
  controller().setEnabled(false);
  EXPECT_FALSE(system.enabled);
  EXPECT_FALSE(controller().enabled());
  EXPECT_EQ(changes.count(), 2);
}

TEST_F(LaunchAtLoginControllerTest, ShowsWhatTheSystemSaysAfterASuccessNotWhatWasAskedFor) {
  system.ignores = true;  // as while the person's approval is awaited
  const QSignalSpy changes(&controller(), &LaunchAtLoginController::enabledChanged);
  controller().setEnabled(true);
  EXPECT_FALSE(controller().enabled());
  EXPECT_EQ(controller().errorMessage(), "");
  EXPECT_EQ(changes.count(), 1);
}

TEST_F(LaunchAtLoginControllerTest, AFailureKeepsTheValueSaysWhatToDoAndTurnsTheSwitchBack) {
  system = {.enabled = true, .refuses = true};
  const QSignalSpy changes(&controller(), &LaunchAtLoginController::enabledChanged);
  const QSignalSpy messages(&controller(), &LaunchAtLoginController::errorMessageChanged);
  system.enabled = false;  // meanwhile; a failed call does not look
  controller().setEnabled(false);
  EXPECT_TRUE(controller().enabled());
  EXPECT_EQ(controller().errorMessage(), kRefusal);
  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(messages.count(), 1);
}

TEST_F(LaunchAtLoginControllerTest, ASuccessClearsTheMessage) {
  system.refuses = true;
  controller().setEnabled(true);
  EXPECT_EQ(controller().errorMessage(), kRefusal);
  system.refuses = false;
  controller().setEnabled(true);
  EXPECT_EQ(controller().errorMessage(), "");
  EXPECT_TRUE(controller().enabled());
}

}  // namespace
}  // namespace velmora
