// The general pasteboard, for what the screens offer to copy.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

namespace velmora {

/// For the main thread.
class Pasteboard : public QObject {
  Q_OBJECT
  QML_ELEMENT

 public:
  Q_INVOKABLE void copy(const QString& text);
};

}  // namespace velmora
