// Runs tests of classes that need an event loop and no screen.
#include <gmock/gmock.h>

#include <QtCore/QCoreApplication>

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
