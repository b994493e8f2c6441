// Runs the QML test file that it is given (-input FILE).
#include <QtQuickTest/quicktest.h>

#include <QtCore/QObject>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>

#include "VelmoraApp/Style/StyleSetup.h"

Q_IMPORT_QML_PLUGIN(VelmoraPlugin)
Q_IMPORT_QML_PLUGIN(Velmora_OfflinePlugin)

class Setup : public QObject {
  Q_OBJECT

 public Q_SLOTS:
  void applicationAvailable() { velmora::setUpStyle(); }
  void qmlEngineAvailable(QQmlEngine* engine) { velmora::addModules(*engine); }
};

QUICK_TEST_MAIN_WITH_SETUP(velmora, Setup)

#include "main.moc"
