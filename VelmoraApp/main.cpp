// The application with its window. It takes no arguments; a second start brings the first one's window
// forward. Diagnostics go to stderr.

#include <QtGui/QIcon>
#include <QtWidgets/QApplication>

#include "BridgeHost/ProgramLog.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "VelmoraApp/Shell/SingleInstance.h"
#include "VelmoraApp/Shell/TerminationSignals.h"
#include "VelmoraApp/Shell/VelmoraApp.h"
#include "VelmoraApp/Style/StyleSetup.h"

namespace {

using namespace velmora;

// The directory that the control socket stands in, too. Without it the bridge says on the screen what is
// wrong.
std::filesystem::path ownDirectory(const Environment& environment, const Log& log) {
  const auto socketURL = UnixSocketEndpoint::defaultURL(environment);
  try {
    UnixSocketEndpoint::prepareDirectory(socketURL);
  } catch (const std::exception& error) {
    log.warning("socket", socketURL.parent_path().string() + ": " + error.what());
  }
  return socketURL.parent_path();
}

int serve(QApplication& application, const Environment& environment, const Log& log) {
  const SingleInstance instance(ownDirectory(environment, log));
  if (!instance.isFirst()) {
    if (instance.wakeFirst(qgetenv("XDG_ACTIVATION_TOKEN"))) return EXIT_SUCCESS;
    log.error("start", "Velmora is already running and does not answer.");
    return EXIT_FAILURE;
  }
  const TerminationSignals signals;
  VelmoraApp app(environment, log);
  QObject::connect(&instance, &SingleInstance::woken, &app, &VelmoraApp::openWindow);
  QObject::connect(&signals, &TerminationSignals::received, &application, &QApplication::quit);
  app.openWindow();
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  const auto environment = velmora::processEnvironment();
  const auto log = velmora::programLog(environment);
  velmora::setUpStyle();
  QApplication application(argc, argv);
  QApplication::setApplicationName("Velmora");
  QApplication::setApplicationVersion(VELMORA_VERSION);
  QApplication::setDesktopFileName("app.velmora.Velmora");
  QApplication::setWindowIcon(QIcon::fromTheme("app.velmora.Velmora"));  // the installed one
  QApplication::setQuitOnLastWindowClosed(false);
  try {
    return serve(application, environment, log);
  } catch (const std::exception& error) {
    log.error("start", error.what());
    return EXIT_FAILURE;
  }
}
