// What can go wrong on the socket.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <string_view>

namespace velmora {

/// A value, thrown as such and told apart by `kind()` or by comparison with one of the factories' values.
class UnixSocketError : public std::exception {
 public:
  enum class Kind {
    system,          ///< A system call failed; `operation()` and `code()` say which and how.
    unsafeEndpoint,  ///< The path is too long, or something other than the user's own stands there.
    peerRejected,    ///< The peer runs as another user, or its user could not be read.
    disconnected,    ///< The peer closed the stream, or a read failed.
  };

  /// `operation` is the name of the call, a literal; `code` is its errno.
  static UnixSocketError system(const char* operation, std::int32_t code) noexcept {
    return {Kind::system, operation, code};
  }
  static UnixSocketError unsafeEndpoint() noexcept { return {Kind::unsafeEndpoint, "", 0}; }
  static UnixSocketError peerRejected() noexcept { return {Kind::peerRejected, "", 0}; }
  static UnixSocketError disconnected() noexcept { return {Kind::disconnected, "", 0}; }

  Kind kind() const noexcept { return kind_; }
  std::string_view operation() const noexcept { return operation_; }  ///< Empty unless `system`.
  std::int32_t code() const noexcept { return code_; }                ///< 0 unless `system`.

  const char* what() const noexcept override;  ///< The case's name; of `system`, the call's.
  std::string inWords() const;                 ///< What happened, in a few words for people.

  friend bool operator==(const UnixSocketError& a, const UnixSocketError& b) noexcept {
    return a.kind_ == b.kind_ && a.operation() == b.operation() && a.code_ == b.code_;
  }

 private:
  UnixSocketError(Kind kind, const char* operation, std::int32_t code) noexcept
      : kind_(kind), operation_(operation), code_(code) {}

  Kind kind_;
  const char* operation_;
  std::int32_t code_;
};

}  // namespace velmora

template <>
struct std::hash<velmora::UnixSocketError> {
  std::size_t operator()(const velmora::UnixSocketError& error) const noexcept {
    const auto kind = static_cast<std::size_t>(error.kind());
    const auto code = static_cast<std::size_t>(static_cast<std::uint32_t>(error.code()));
    return std::hash<std::string_view>{}(error.operation()) ^ (code << 2 | kind);
  }
};
