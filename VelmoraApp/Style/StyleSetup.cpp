// Apart from the header, so that only this file knows Qt Quick Controls and the plug-in.
#include "VelmoraApp/Style/StyleSetup.h"

#include <QtQml/QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuickControls2/QQuickStyle>

Q_IMPORT_QML_PLUGIN(Velmora_StylePlugin)

namespace velmora {

void setUpStyle() {
  QQuickStyle::setStyle("Velmora.Style");
  QQuickStyle::setFallbackStyle("Fusion");
  chooseRenderer();
}

void addModules(QQmlEngine& engine) { engine.addImportPath("qrc:/qt/qml"); }

}  // namespace velmora
