// Owns the listening socket and its file.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

#include "LocalControl/UnixSocketConnection.h"
#include "System/FileDescriptor.h"

namespace velmora {

/// Listens from construction to destruction; the socket file exists for the same span. Destruction removes
/// the file only while it is still the one that this server made. Used by one thread at a time; there are no
/// locks.
class UnixSocketServer {
 public:
  /// Prepares the directory, removes a stale socket, binds, sets mode 0600, listens. Throws UnixSocketError
  /// (and what UnixSocketEndpoint::prepareDirectory throws).
  explicit UnixSocketServer(std::filesystem::path socketURL);
  ~UnixSocketServer();
  UnixSocketServer(const UnixSocketServer&) = delete;
  UnixSocketServer& operator=(const UnixSocketServer&) = delete;

  const std::filesystem::path& socketURL() const noexcept { return socketURL_; }
  int descriptor() const noexcept { return descriptor_.get(); }

  /// Stops listening and removes the socket file, as destruction does: from then on clients are refused at
  /// once instead of waiting for ever.
  void close() noexcept;

  /// Whether clients that connect to the path still reach this server.
  bool isInPlace() const noexcept;

  /// Blocks for the next connection, of a peer that runs as the effective user. Throws system("accept"), or
  /// peerRejected after it has closed the connection.
  UnixSocketConnection acceptConnection();

  /// The same, or nothing when no connection waits.
  std::optional<UnixSocketConnection> acceptWaiting();

 private:
  struct FileIdentity {
    dev_t device;
    ino_t inode;
    bool operator==(const FileIdentity&) const = default;
  };

  // The socket of the effective user that stands at the path now.
  std::optional<FileIdentity> ownSocketFile() const noexcept;

  std::filesystem::path socketURL_;
  FileDescriptor descriptor_;
  std::optional<FileIdentity> boundFile_;
};

}  // namespace velmora
