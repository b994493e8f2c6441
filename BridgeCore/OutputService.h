// Serves terminal_read_output.
#pragma once

#include <vector>

#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/TerminalSessionService.h"
#include "BridgeModels/ToolPayloads.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// A read that was cut is still a success; a warning says so.
struct OutputReading {
  OutputPayload payload;
  std::vector<StructuredError> warnings;
};

/// Thread-safe.
class OutputService {
 public:
  OutputService(TerminalAutomating& automation, TerminalSessionService& sessions,
                const SessionPermissionService& permissions)
      : automation_(automation), sessions_(sessions), permissions_(permissions) {}

  OutputReading read(const ReadOutputInput& input);

 private:
  TerminalAutomating& automation_;
  TerminalSessionService& sessions_;
  const SessionPermissionService& permissions_;
};

}  // namespace velmora
