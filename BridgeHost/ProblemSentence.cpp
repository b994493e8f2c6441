#include "BridgeHost/ProblemSentence.h"

#include <system_error>

#include "BridgeModels/StructuredError.h"
#include "LocalControl/UnixSocketError.h"

namespace velmora {

std::string problemSentence(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const StructuredError& structured) {
    return structured.message + " " + structured.recoverySuggestion;
  } catch (const UnixSocketError& socket) {
    const std::string reason = socket.what();
    return socket.kind() == UnixSocketError::Kind::system
               ? reason + ": " + std::generic_category().message(socket.code())
               : reason;
  } catch (const std::exception& other) {
    return other.what();
  }
}

}  // namespace velmora
