// Runs tests of classes that need widgets or windows, on a screen that nobody sees.
#include <gmock/gmock.h>

#include <QtWidgets/QApplication>

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  ::testing::InitGoogleMock(&argc, argv);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
