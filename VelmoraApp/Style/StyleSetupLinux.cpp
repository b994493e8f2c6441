#include <QtQuick/QQuickWindow>

#include "VelmoraApp/Style/StyleSetup.h"

namespace velmora {

void chooseRenderer() {
  // The screens are still and flat: drawing them in software takes 60 MB where OpenGL takes 150.
  if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  }
}

}  // namespace velmora
