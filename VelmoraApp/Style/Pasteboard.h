// The general pasteboard, for what the screens offer to copy.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

namespace velmora {

/// For the main thread.
class Pasteboard : public QObject {
  Q_OBJECT
  QML_ELEMENT

 public:
  Q_INVOKABLE void copy(const QString& text) { QGuiApplication::clipboard()->setText(text); }
};

}  // namespace velmora
