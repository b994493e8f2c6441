// Keeps a second start from becoming a second application: it wakes the first one instead.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QLockFile>
#include <QtCore/QObject>
#include <QtNetwork/QLocalServer>
#include <filesystem>

namespace velmora {

/// For the main thread. The first one in a directory holds a lock there until its process ends, however it
/// ends.
class SingleInstance : public QObject {
  Q_OBJECT

 public:
  /// `directory` must exist and belong to the user alone. If no lock can be had, every start counts as the
  /// first.
  explicit SingleInstance(const std::filesystem::path& directory);

  bool isFirst() const { return isFirst_; }

  /// Asks the first one to come forward, with the desktop's permission if there is one; false when it does
  /// not answer.
  bool wakeFirst(const QByteArray& activationToken) const;

  /// For the end of a process that runs no destructors: takes the first one's socket away.
  void leave() const;

 Q_SIGNALS:
  void woken(const QByteArray& activationToken);

 private:
  void listen();

  const QString socketPath_;
  QLockFile lock_;
  bool isFirst_;
  QLocalServer server_;
};

}  // namespace velmora
