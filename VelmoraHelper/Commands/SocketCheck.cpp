#include "VelmoraHelper/Commands/SocketCheck.h"

#include <sys/stat.h>

#include <cerrno>
#include <optional>
#include <system_error>

#include "LocalControl/UnixSocketEndpoint.h"

namespace velmora {

namespace {

constexpr const char* socketCheck = "socket";
constexpr const char* takeAnotherPlace =
    "Give XDG_RUNTIME_DIR or TMPDIR a short path to a folder of your own, the same for Velmora and for MCP "
    "clients.";

Check notThere(const std::filesystem::path& socketURL) {
  return Check::passed(socketCheck, socketURL.string() + ", not there yet");
}

// It must be of the expected type, and nobody else may have access.
std::optional<Check> defectOf(const std::filesystem::path& path, const struct stat& status, mode_t type,
                              uid_t user, const std::string& mode) {
  if ((status.st_mode & S_IFMT) != type) {
    return Check::failed(socketCheck, path.string() + " is something else than it should be",
                         "Find out what put it there, remove it and restart Velmora.");
  }
  if (status.st_uid != user) {
    return Check::failed(socketCheck, path.string() + " belongs to another user", takeAnotherPlace);
  }
  if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
    return Check::failed(socketCheck, "others have access to " + path.string(),
                         "Run: chmod " + mode + " '" + path.string() + "'");
  }
  return std::nullopt;
}

}  // namespace

Check unseenSocket(const std::filesystem::path& path, int code) {
  const auto finding = path.string() + " cannot be looked at: " + std::generic_category().message(code);
  if (code != EACCES) return Check::failed(socketCheck, finding, takeAnotherPlace);
  return Check::failed(socketCheck, finding,
                       "Give yourself access to it: chmod u+rwx '" + path.parent_path().string() + "'");
}

Check checkSocket(const std::filesystem::path& socketURL, uid_t user) {
  if (socketURL.native().size() > UnixSocketEndpoint::maximumPathBytes) {
    return Check::failed(socketCheck,
                         socketURL.string() + " is longer than " +
                             std::to_string(UnixSocketEndpoint::maximumPathBytes) + " bytes",
                         takeAnotherPlace);
  }
  struct stat status {};
  const auto folder = socketURL.parent_path();
  if (::lstat(folder.c_str(), &status) != 0) {
    return errno == ENOENT ? notThere(socketURL) : unseenSocket(folder, errno);
  }
  if (auto defect = defectOf(folder, status, S_IFDIR, user, "700")) return *defect;
  if (::lstat(socketURL.c_str(), &status) != 0) {
    return errno == ENOENT ? notThere(socketURL) : unseenSocket(socketURL, errno);
  }
  if (auto defect = defectOf(socketURL, status, S_IFSOCK, user, "600")) return *defect;
  return Check::passed(socketCheck, socketURL.string() + ", yours alone");
}

}  // namespace velmora
