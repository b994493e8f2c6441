// velmora-app-offline: the application's window over made-up sessions and requests. For looking at it, for
// working on it, and for its pictures in the documents (scripts/screenshots.sh).
#include <QtCore/QCommandLineParser>
#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuick/QQuickWindow>

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Style/StyleSetup.h"
#include "tests/VelmoraApp/offline/OfflineBridge.h"

Q_IMPORT_QML_PLUGIN(VelmoraPlugin)
Q_IMPORT_QML_PLUGIN(Velmora_OfflinePlugin)

namespace {

// Long enough for the first poll and every change of a control.
constexpr int kSettled = 700;

// Does nothing for an empty name.
void showLanguage(velmora::HelpViewModel& help, const QString& name) {
  if (const auto language = velmora::fromWireText<velmora::Language>(name)) {
    help.setLanguageIndex(static_cast<int>(*language));
  }
}

// Likewise.
void showStep(velmora::OnboardingViewModel& onboarding, const QString& name) {
  const auto step = velmora::fromWireText<velmora::OnboardingStep>(name);
  while (step && onboarding.step() < *step) {
    onboarding.next();
  }
}

}  // namespace

int main(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  QCommandLineParser arguments;
  arguments.addHelpOption();
  arguments.addOption(
      {"scenario",
       "full, empty, paused, denied, long, many, macOS, firstRun, firstRunMacOS, other, deaf or kept.",
       "name", "full"});
  arguments.addOption({"section", "dashboard, sessions, history, settings or help.", "name", "dashboard"});
  arguments.addOption({"page", "Of the settings, from 0.", "number", "0"});
  arguments.addOption({"language", "Of the help: english or korean; else the system's.", "name"});
  arguments.addOption(
      {"onboarding", "With the introduction at scope, permission, policy or connection.", "step"});
  arguments.addOption({"dark", "In the dark."});
  arguments.addOption({"width", "Of the window.", "pixels", "960"});
  arguments.addOption({"height", "Of the window.", "pixels", "640"});
  arguments.addOption({"clear", "With the question whether to delete the history."});
  arguments.addOption({"picture", "Writes a picture of the window and ends.", "file"});
  arguments.process(application);

  velmora::setUpStyle();
  velmora::testing::OfflineBridge bridge;
  const bool introduces = arguments.isSet("onboarding") && !arguments.isSet("scenario");
  bridge.setScenario(introduces ? "firstRun" : arguments.value("scenario"));
  auto& viewModels = *bridge.viewModels();
  viewModels.navigation()->setSelectedSection(arguments.value("section"));
  viewModels.settings()->setPage(arguments.value("page").toInt());
  showLanguage(*viewModels.help(), arguments.value("language"));
  showStep(*viewModels.onboarding(), arguments.value("onboarding"));

  QQmlApplicationEngine engine;
  velmora::addModules(engine);
  engine.setInitialProperties({{"viewModels", QVariant::fromValue(&viewModels)},
                               {"width", arguments.value("width").toInt()},
                               {"height", arguments.value("height").toInt()},
                               {"dark", arguments.isSet("dark")},
                               {"visible", true}});
  engine.load(QUrl("qrc:/qt/qml/Velmora/Offline/OfflineWindow.qml"));
  if (engine.rootObjects().isEmpty()) {
    return 1;
  }
  auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
  if (arguments.isSet("clear")) {
    viewModels.history()->clearing()->request();
  }

  const auto picture = arguments.value("picture");
  if (!picture.isEmpty()) {
    QTimer::singleShot(kSettled, window, [&] {
      // Small, because the pictures stand in the repository: no transparency, and packed as tightly as can
      // be.
      const bool saved = window->grabWindow().convertToFormat(QImage::Format_RGB888).save(picture, "PNG", 0);
      QGuiApplication::exit(saved ? 0 : 1);
    });
  }
  return QGuiApplication::exec();
}
