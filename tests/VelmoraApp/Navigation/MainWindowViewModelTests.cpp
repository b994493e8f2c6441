#include "VelmoraApp/Navigation/MainWindowViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/FakeDesktop.h"

namespace velmora {
namespace {

class MainWindowViewModelTest : public ::testing::Test {
 protected:
  const TemporaryDirectory home;
  testing::FakeDesktop desktop{QString::fromStdString((home / "defaults.ini").string())};
  MainWindowViewModel window{desktop};
  std::shared_ptr<int> quits = testing::countOf(window, &MainWindowViewModel::quitRequested);
};

TEST_F(MainWindowViewModelTest, KnowsItsNameAndVersion) {
  EXPECT_EQ(window.applicationName(), "Velmora");
  EXPECT_TRUE(window.applicationVersion().contains('.'));
}

TEST_F(MainWindowViewModelTest, LeavesNameAndVersionToTheWindowWhereTheSystemHasNoPanel) {
  EXPECT_FALSE(window.showAbout());
  desktop.hasAboutPanel = true;
  EXPECT_TRUE(window.showAbout());
}

TEST_F(MainWindowViewModelTest, ClosesIntoTheTrayAndGoesOn) {
  window.setTray(true, true);
  EXPECT_TRUE(window.closeRequested());
  EXPECT_FALSE(window.explainsClosing());
  EXPECT_EQ(*quits, 0);
}

TEST_F(MainWindowViewModelTest, ClosesWithoutAWordWhereTheDockLeadsBack) {
  desktop.isInDock = true;
  for (const bool hasPlace : {true, false}) {
    window.setTray(false, hasPlace);
    EXPECT_TRUE(window.closeRequested()) << "the system asks this when the user quits or logs out, too";
    EXPECT_FALSE(window.explainsClosing());
  }
  EXPECT_EQ(*quits, 0);
}

TEST_F(MainWindowViewModelTest, WithoutATraySaysEachTimeThatClosingQuits) {
  EXPECT_FALSE(window.closeRequested());
  EXPECT_TRUE(window.explainsClosing());
  EXPECT_EQ(*quits, 0);
  window.cancelClosing();
  EXPECT_FALSE(window.explainsClosing());
  EXPECT_FALSE(window.closeRequested());
  EXPECT_TRUE(window.explainsClosing()) << "who cancelled is asked again";
  EXPECT_EQ(*quits, 0);
  EXPECT_TRUE(window.closeRequested()) << "closing once more is an answer";
  EXPECT_EQ(*quits, 1);
}

TEST_F(MainWindowViewModelTest, SaysThatThereIsNoTrayOnlyWhereThereIsNone) {
  EXPECT_TRUE(window.closeExplanation().startsWith("This desktop has no tray to keep Velmora in, so "));
  window.setTray(false, true);
  EXPECT_TRUE(window.closeExplanation().startsWith("You switched Velmora's place in the tray off, so "));
}

TEST_F(MainWindowViewModelTest, QuitsWhenThePersonConfirmsAndWheneverAsked) {
  window.closeRequested();
  window.confirmClosing();
  EXPECT_FALSE(window.explainsClosing());
  EXPECT_EQ(*quits, 1);
  window.quit();
  EXPECT_EQ(*quits, 2);
}

}  // namespace
}  // namespace velmora
