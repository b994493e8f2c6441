// The switch "Launch at login".
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QString>

#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

/// For the main thread. Shows the system's state, not what was requested.
class LaunchAtLoginController : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(bool enabled READ enabled WRITE setEnabled NOTIFY enabledChanged)
  Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)

 public:
  /// `desktop` must outlive it.
  explicit LaunchAtLoginController(Desktop& desktop);

  bool enabled() const { return enabled_; }
  QString errorMessage() const;  ///< Empty unless the last change failed.

  /// A failed call changes `errorMessage` only, but emits enabledChanged() too, so that the switch snaps
  /// back.
  Q_INVOKABLE void setEnabled(bool enabled);

 Q_SIGNALS:
  void enabledChanged();
  void errorMessageChanged();

 private:
  void setFailed(bool failed);

  Desktop& desktop_;
  bool enabled_;
  bool failed_ = false;
};

}  // namespace velmora
