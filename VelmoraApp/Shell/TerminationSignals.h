// Turns the signals that end the program, and the one that pauses it, into Qt's.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>

namespace velmora {

/// One per process, made on the main thread before other threads start. Also sets SIGPIPE and SIGCHLD to what
/// the bridge needs.
class TerminationSignals : public QObject {
  Q_OBJECT

 public:
  /// Throws std::system_error when no pipe can be made.
  TerminationSignals();

 Q_SIGNALS:
  void received();
  void pauseAsked();  ///< SIGUSR1, which anyone may send who may end the program.

 private:
  QSocketNotifier notifier_;
};

}  // namespace velmora
