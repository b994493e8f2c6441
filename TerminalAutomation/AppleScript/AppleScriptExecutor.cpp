#include "TerminalAutomation/AppleScript/AppleScriptExecutor.h"

#include <utility>

namespace velmora {

AppleScriptExecutor::AppleScriptExecutor(AppleScriptParts parts, const std::string& source)
    : AppleScriptExecutor(new AppleScriptOperations(std::move(parts), source)) {}

AppleScriptExecutor::AppleScriptExecutor(AppleScriptOperations* operations)
    : SerialTerminal(std::unique_ptr<TerminalOperations>(operations)), operations_(*operations) {
  operations_.whenUndecided([this] { requestAccess(); });
}

std::future<void> AppleScriptExecutor::requestAccess() {
  return change([&operations = operations_] { operations.requestTerminalAccess(); });
}

std::future<void> AppleScriptExecutor::requestSystemEventsAccess() {
  return change([&operations = operations_] { operations.requestSystemEventsAccess(); });
}

std::future<void> AppleScriptExecutor::closeTestWindow(std::int64_t windowId) {
  return change([&operations = operations_, windowId] { operations.closeWindow(windowId); });
}

}  // namespace velmora
