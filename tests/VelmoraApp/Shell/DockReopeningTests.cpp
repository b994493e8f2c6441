#include <gtest/gtest.h>
#include <qpa/qwindowsysteminterface.h>

#include "VelmoraApp/Shell/DockReopening.h"

namespace velmora {
namespace {

class DockReopeningTest : public ::testing::Test {
 protected:
  /// What the platform plug-in sends for a click on the icon in the Dock: "active", even when it is so
  /// already.
  static void clickInDock() { tell(Qt::ApplicationActive); }
  static void tell(Qt::ApplicationState state) {
    QWindowSystemInterface::handleApplicationStateChanged(state, /*forcePropagate=*/true);
    QWindowSystemInterface::sendWindowSystemEvents(QEventLoop::AllEvents);
  }

  int opens = 0;
  const DockReopening reopening{[this] { ++opens; }};
};

TEST_F(DockReopeningTest, EachClickOpensAWindowThatIsClosed) {
  clickInDock();
  clickInDock();
  EXPECT_EQ(opens, 2);
}

TEST_F(DockReopeningTest, AWindowThatIsToBeSeenIsLeftAlone) {
  QWindow window;
  window.show();
  clickInDock();
  EXPECT_EQ(opens, 0);
  window.close();
  clickInDock();
  EXPECT_EQ(opens, 1);
}

TEST_F(DockReopeningTest, LeavingTheApplicationOpensNothing) {
  tell(Qt::ApplicationInactive);
  EXPECT_EQ(opens, 0);
}

}  // namespace
}  // namespace velmora
