// A keyboard whose keys repeat: a QML test can press a key, but not hold it down.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QObject>
#include <QtGui/QKeyEvent>

namespace velmora::testing {

/// For the main thread.
class Keyboard : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  explicit Keyboard(QObject* parent = nullptr) : QObject(parent) {}

  /// Holds a key down in `window` until it has repeated three times. X11 sends each repeat as a release and a
  /// press.
  Q_INVOKABLE void hold(QObject* window, int key) const {
    send(window, QEvent::KeyPress, key, /*repeats=*/false);
    for (int repeats = 0; repeats < 3; ++repeats) {
      send(window, QEvent::KeyRelease, key, /*repeats=*/true);
      send(window, QEvent::KeyPress, key, /*repeats=*/true);
    }
    send(window, QEvent::KeyRelease, key, /*repeats=*/false);
  }

 private:
  static void send(QObject* window, QEvent::Type type, int key, bool repeats) {
    QKeyEvent event(type, key, Qt::NoModifier, key == Qt::Key_Space ? " " : "\r", repeats);
    QCoreApplication::sendEvent(window, &event);
  }
};

}  // namespace velmora::testing
