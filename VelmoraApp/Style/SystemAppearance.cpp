#include "VelmoraApp/Style/SystemAppearance.h"

#include <QtGui/QFontDatabase>

namespace velmora {

SystemAppearance::SystemAppearance(QObject* parent) : QObject(parent) { follow(); }

QString SystemAppearance::fixedFontFamily() const {
  return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

void SystemAppearance::setDark(bool dark) {
  if (dark == dark_) {
    return;
  }
  dark_ = dark;
  Q_EMIT darkChanged();
}

}  // namespace velmora
