// One connected stream that carries frames.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "LocalControl/UnixSocketError.h"
#include "System/FileDescriptor.h"

namespace velmora {

/// Owns its descriptor and closes it when it is destroyed. Used by one thread at a time, apart from what any
/// thread may call. Reads and writes block until they are done or fail; nothing is tried twice.
class UnixSocketConnection {
 public:
  explicit UnixSocketConnection(FileDescriptor descriptor) noexcept : descriptor_(std::move(descriptor)) {}

  int descriptor() const noexcept { return descriptor_.get(); }

  /// Throws peerRejected unless the process at the other end runs as `expectedUID`.
  void verifyPeer(uid_t expectedUID) const;

  /// The next whole frame, header and payload. Throws disconnected, and LocalControlCodecError (emptyFrame,
  /// frameTooLarge) for a length that is out of range; nothing of that payload has been read then.
  std::string readFrame();

  /// Writes all of `bytes`. Throws system("write").
  void writeFrame(std::string_view bytes);

  /// Whether the peer has closed its end: nobody will read an answer. A peer that only sends no more has not.
  /// Any thread.
  bool peerHasLeft() const noexcept;

  /// Reads no more than what has arrived; writing goes on. Wakes a thread that is blocked in reading. Any
  /// thread.
  void endReading() noexcept;

  /// Ends the stream both ways, which also wakes a thread that is blocked in it. Any thread.
  void interrupt() noexcept;

 private:
  void readExactly(char* destination, std::size_t count);

  FileDescriptor descriptor_;
};

}  // namespace velmora
