// The application with its window. It takes no arguments but those of Qt; a second start brings the first
// one's window forward. Diagnostics go to stderr.

#include <QtGui/QIcon>
#include <QtWidgets/QApplication>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "BridgeHost/ProgramLog.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "System/DescriptorLimit.h"
#include "System/Memory.h"
#include "System/Utf8.h"
#include "VelmoraApp/Shell/SingleInstance.h"
#include "VelmoraApp/Shell/TerminationSignals.h"
#include "VelmoraApp/Shell/VelmoraApp.h"
#include "VelmoraApp/Style/StyleSetup.h"

namespace {

using namespace velmora;

constexpr const char* help =
    "Usage: velmora-app [--help | --version]\n\n"
    "Runs the bridge between AI coding agents and your terminal, with a window and an\n"
    "entry in the tray. A second start brings the window of the first forward.\n"
    "Without a display, start velmora-headless. The manual is velmora-app(1).\n";

// The exit status, when the arguments ask for words and not for a start.
std::optional<int> answerTo(int argc, char** argv) {
  if (argc != 2) return std::nullopt;
  const std::string_view argument = argv[1];
  if (argument == "--help" || argument == "-h") return std::fputs(help, stdout), EXIT_SUCCESS;
  if (argument == "--version") return std::puts("velmora-app " VELMORA_VERSION), EXIT_SUCCESS;
  return std::nullopt;
}

// What `main` was given, of which Qt takes away the arguments that are its own. Known to all, since a message
// handler is handed nothing else.
int argumentCount = 0;
char** arguments = nullptr;

std::optional<int> refusalOfArguments() {
  if (argumentCount <= 1) return std::nullopt;
  std::fprintf(stderr, "velmora-app: takes no arguments such as \"%s\"; velmora-app --help says more\n",
               plainText(arguments[1]).c_str());
  return 2;
}

// Qt ends a process that finds no display with a core dump; its own arguments about displays are taken away
// by then. An argument that nobody takes is all that matters, if there is one.
void sayThatThereIsNoDisplay(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type == QtFatalMsg) {
    if (const auto status = refusalOfArguments()) std::_Exit(*status);
    std::fputs("velmora-app: no display: start velmora-headless\n", stderr);
    std::_Exit(EXIT_FAILURE);
  }
  if (argumentCount <= 1) std::fprintf(stderr, "%s\n", message.toUtf8().constData());
}

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
  QObject::connect(&signals, &TerminationSignals::pauseAsked, &app, &VelmoraApp::pause);
  QObject::connect(&app, &VelmoraApp::left, [&instance] { instance.leave(); });
  app.openWindow();
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  if (const auto status = answerTo(argc, argv)) return *status;
  velmora::raiseDescriptorLimit();
  velmora::shareMemoryArenas();
  const auto environment = velmora::processEnvironment();
  const auto log = velmora::programLog(environment);
  velmora::setUpStyle();
  const auto usual = qInstallMessageHandler(sayThatThereIsNoDisplay);
  argumentCount = argc;
  arguments = argv;
  QApplication application(argumentCount, arguments);
  qInstallMessageHandler(usual);
  if (const auto status = refusalOfArguments()) return *status;
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
