// Where the socket lives, and the hygiene of its directory and file. Three things together keep other users
// out: the directory's mode 0700, the socket's mode 0600, and the same-user check at both ends.
#pragma once

#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include <filesystem>
#include <optional>
#include <vector>

#include "LocalControl/UnixSocketError.h"
#include "System/SocketPlatform.h"

namespace velmora {

/// Stateless; any thread.
namespace UnixSocketEndpoint {

/// The name of the socket's own directory; the bundle identifier of the application.
inline constexpr const char* directoryName = "app.velmora.Velmora";
inline constexpr const char* fileName = "control-v1.sock";
/// The socket for users, beside that of the nine tools.
inline constexpr const char* personFileName = "person-v1.sock";

/// The longest path that fits, with its terminating NUL, the shorter of the two systems' addresses.
inline constexpr std::size_t maximumPathBytes = 103;

/// The socket's place for a process with this environment: in the user's own temporary directory, else in
/// TMPDIR (when it is absolute), else in /tmp. The application and the helper find each other by it.
std::filesystem::path defaultURL(const Environment& environment);

/// The same, with the answer of `canonicalUserTemporaryDirectory` given.
std::filesystem::path defaultURL(const Environment& environment,
                                 const std::optional<std::filesystem::path>& userTemporaryDirectory);

/// Every place that the rule names, the default first. A bridge in other surroundings, such as one that was
/// started before the user's own directory was there, listens at one of the others.
std::vector<std::filesystem::path> places(const Environment& environment,
                                          const std::optional<std::filesystem::path>& userTemporaryDirectory);
std::vector<std::filesystem::path> places(const Environment& environment);

/// The socket for users that belongs to a socket of the nine tools. It fits wherever that one does.
std::filesystem::path personURL(const std::filesystem::path& socketURL);

/// The temporary directory that the system keeps for this user alone, when it has one.
std::optional<std::filesystem::path> canonicalUserTemporaryDirectory(const Environment& environment);

/// Makes the socket's directory, with its parents, and gives it mode 0700. Throws
/// std::filesystem::filesystem_error when it cannot be made, unsafeEndpoint when what stands there is no
/// directory or not the effective user's own (it is left as it is), system("open"), system("chmod").
void prepareDirectory(const std::filesystem::path& socketURL);

/// Clears the path for a new socket. Only a socket of `expectedUID` is removed; anything else stays and
/// throws unsafeEndpoint. Also throws system("lstat") and system("unlink").
void removeStaleSocket(const std::filesystem::path& socketURL, uid_t expectedUID);

/// Whether what stands at the path is not `user`'s. A connect, even one that is taken back at once, ends the
/// accepting of another user's server.
bool isOfAnother(const std::filesystem::path& socketURL, uid_t user) noexcept;

/// What `bind` and `connect` take for this path, with `addressLength`. Throws unsafeEndpoint when the path
/// does not fit (or is empty, which would name no file at all).
sockaddr_un address(const std::filesystem::path& socketURL);
inline constexpr socklen_t addressLength = 106;

}  // namespace UnixSocketEndpoint

}  // namespace velmora
