#include <gtest/gtest.h>

#include <QtCore/QLocale>

#include "VelmoraApp/AppModel/Translation.h"
#include "VelmoraApp/Platform/AboutMenu.h"

namespace velmora {
namespace {

TEST(AboutMenu, SpeaksTheLanguageThatIsChosen) {
  AboutMenu menu([] {});
  EXPECT_EQ(menu.about().text(), "About Velmora");
  {
    const auto korean = Translation::installed(Language::korean);
    QCoreApplication::processEvents();
    EXPECT_EQ(menu.about().text(), "Velmora에 관하여");
  }
  QCoreApplication::processEvents();
  EXPECT_EQ(menu.about().text(), "About Velmora");
  QLocale::setDefault(QLocale::system());
}

TEST(AboutMenu, ShowsWhatItIsFor) {
  int shown = 0;
  AboutMenu menu([&] { ++shown; });
  menu.about().trigger();
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(menu.about().menuRole(), QAction::AboutRole);
}

}  // namespace
}  // namespace velmora
