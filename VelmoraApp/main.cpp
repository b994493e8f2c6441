// The application with its window. It takes no arguments; a second start brings the first one's window
// forward. Diagnostics go to stderr.

#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

#include <QtGui/QIcon>
#include <QtWidgets/QApplication>

#include "LocalControl/UnixSocketEndpoint.h"
#include "VelmoraApp/Shell/SingleInstance.h"
#include "VelmoraApp/Shell/TerminationSignals.h"
#include "VelmoraApp/Shell/VelmoraApp.h"
#include "VelmoraApp/Style/StyleSetup.h"

namespace {

using namespace velmora;

// The directory that the control socket stands in, too. Without it the bridge says on the screen what is
// wrong.
std::filesystem::path ownDirectory(const Environment& environment) {
  const auto socketURL = UnixSocketEndpoint::defaultURL(environment);
  try {
    UnixSocketEndpoint::prepareDirectory(socketURL);
  } catch (const std::exception& error) {
    spdlog::warn("{}: {}", socketURL.parent_path().string(), error.what());
  }
  return socketURL.parent_path();
}

int serve(QApplication& application) {
  const auto environment = processEnvironment();
  const SingleInstance instance(ownDirectory(environment));
  if (!instance.isFirst()) {
    if (instance.wakeFirst(qgetenv("XDG_ACTIVATION_TOKEN"))) return EXIT_SUCCESS;
    spdlog::error("Velmora is already running and does not answer.");
    return EXIT_FAILURE;
  }
  const TerminationSignals signals;
  VelmoraApp app(environment);
  QObject::connect(&instance, &SingleInstance::woken, &app, &VelmoraApp::openWindow);
  QObject::connect(&signals, &TerminationSignals::received, &application, &QApplication::quit);
  app.openWindow();
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  spdlog::set_default_logger(spdlog::stderr_color_mt("velmora-app"));
  velmora::setUpStyle();
  QApplication application(argc, argv);
  QApplication::setApplicationName("Velmora");
  QApplication::setApplicationVersion(VELMORA_VERSION);
  QApplication::setDesktopFileName("app.velmora.Velmora");
  QApplication::setWindowIcon(QIcon::fromTheme("app.velmora.Velmora"));  // the installed one
  QApplication::setQuitOnLastWindowClosed(false);
  try {
    return serve(application);
  } catch (const std::exception& error) {
    spdlog::critical("{}", error.what());
    return EXIT_FAILURE;
  }
}
