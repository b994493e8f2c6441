#include "BridgeCore/StatusDeadlineGate.h"

#include "BridgeCore/ErrorCatalogue.h"

namespace velmora {

TerminalRuntimeStatus StatusDeadlineGate::wait(std::chrono::nanoseconds deadline) const {
  if (query_.wait_until(std::chrono::steady_clock::now() + deadline) != std::future_status::ready) {
    throw catalogue::statusDeadlineExceeded();
  }
  return query_.get();
}

}  // namespace velmora
