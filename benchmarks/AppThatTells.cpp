// velmora-app, but for one line on standard output as soon as its window has drawn its first frame. The
// benchmark of its start reads it. With an argument the window is hidden then, as a user does who closes it.
#include <QtQuick/QQuickWindow>
#include <QtWidgets/QApplication>
#include <cstdio>

#include "VelmoraApp/Shell/TerminationSignals.h"
#include "VelmoraApp/Shell/VelmoraApp.h"
#include "VelmoraApp/Style/StyleSetup.h"

int main(int argc, char** argv) {
  velmora::setUpStyle();
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  const velmora::TerminationSignals signals;
  velmora::VelmoraApp app(velmora::processEnvironment());
  QObject::connect(&signals, &velmora::TerminationSignals::received, &application, &QApplication::quit);
  app.openWindow();
  QObject::connect(
      app.window(), &QQuickWindow::frameSwapped, &application,
      [&app, hides = argc > 1] {
        if (hides) app.window()->hide();
        std::puts("frame");
        std::fflush(stdout);
      },
      static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
  return QApplication::exec();
}
