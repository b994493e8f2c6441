#include "LocalControl/UnixSocketError.h"

#include <system_error>

namespace velmora {

const char* UnixSocketError::what() const noexcept {
  switch (kind_) {
    case Kind::system:
      return operation_;
    case Kind::unsafeEndpoint:
      return "unsafeEndpoint";
    case Kind::peerRejected:
      return "peerRejected";
    case Kind::disconnected:
      return "disconnected";
  }
  return "";
}

std::string UnixSocketError::inWords() const {
  switch (kind_) {
    case Kind::system:
      return std::string(operation_) + ": " + std::generic_category().message(code_);
    case Kind::unsafeEndpoint:
      return "the path is too long, or what stands there is not this user's";
    case Kind::peerRejected:
      return "a process of another user was at the other end";
    case Kind::disconnected:
      return "the other end has closed";
  }
  return "";
}

}  // namespace velmora
