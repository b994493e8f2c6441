// Runs tests of what the screens say, in English: its plurals stand among the translations.
#include <gmock/gmock.h>

#include <QtCore/QCoreApplication>

#include "VelmoraApp/AppModel/Translation.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  const QCoreApplication application(argc, argv);
  const auto english = velmora::Translation::installed(velmora::Language::english);
  return RUN_ALL_TESTS();
}
