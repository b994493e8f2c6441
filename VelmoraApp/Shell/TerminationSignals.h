// Turns the signals that end a program into one of Qt's.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>

namespace velmora {

/// One a process, for the main thread, before other threads start. Also gives SIGPIPE and SIGCHLD the
/// dispositions that the bridge needs.
class TerminationSignals : public QObject {
  Q_OBJECT

 public:
  /// Throws std::system_error when the system has no pipe to give.
  TerminationSignals();

 Q_SIGNALS:
  void received();

 private:
  QSocketNotifier notifier_;
};

}  // namespace velmora
