#include "VelmoraApp/Shell/SingleInstance.h"

#include <QtNetwork/QLocalSocket>

namespace velmora {

namespace {

constexpr int patienceMilliseconds = 2000;

QString pathIn(const std::filesystem::path& directory, const char* name) {
  return QString::fromStdString((directory / name).string());
}

}  // namespace

SingleInstance::SingleInstance(const std::filesystem::path& directory)
    : socketPath_(pathIn(directory, "window-v1.sock")), lock_(pathIn(directory, "window.lock")) {
  lock_.setStaleLockTime(0);  // only the end of its holder frees it, never its age
  isFirst_ = lock_.tryLock(/*timeout=*/0) || lock_.error() != QLockFile::LockFailedError;
  if (isFirst_) listen();
}

void SingleInstance::listen() {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  QLocalServer::removeServer(socketPath_);  // left by one that was killed
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    auto* socket = server_.nextPendingConnection();
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
      if (socket->canReadLine()) Q_EMIT woken(socket->readLine().trimmed());
    });
  });
  server_.listen(socketPath_);
}

bool SingleInstance::wakeFirst(const QByteArray& activationToken) const {
  QLocalSocket socket;
  socket.connectToServer(socketPath_);
  if (!socket.waitForConnected(patienceMilliseconds)) return false;
  socket.write(activationToken + "\n");
  return socket.waitForBytesWritten(patienceMilliseconds);
}

void SingleInstance::leave() const {
  if (isFirst_) QLocalServer::removeServer(socketPath_);
}

}  // namespace velmora
