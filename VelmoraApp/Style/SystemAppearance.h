// What the style takes from the system.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtGui/QFontDatabase>

namespace velmora {

/// The system's choice of light or dark, followed while the application runs, and its font of fixed width.
/// Main thread only. Where the system says nothing, light.
class SystemAppearance : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  Q_PROPERTY(bool dark READ dark NOTIFY darkChanged)
  Q_PROPERTY(QString fixedFontFamily READ fixedFontFamily CONSTANT)

 public:
  explicit SystemAppearance(QObject* parent = nullptr) : QObject(parent) { follow(); }

  bool dark() const { return dark_; }
  QString fixedFontFamily() const { return QFontDatabase::systemFont(QFontDatabase::FixedFont).family(); }

 Q_SIGNALS:
  void darkChanged();

 private:
  /// Asks the system once and listens from then on. In the platform's file.
  void follow();
  void setDark(bool dark) {
    if (dark == dark_) return;
    dark_ = dark;
    Q_EMIT darkChanged();
  }

  bool dark_ = false;
};

}  // namespace velmora
