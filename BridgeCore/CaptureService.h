// Serves terminal_capture_screen. The picture stays on disk for the client to read; nothing here deletes it.
#pragma once

#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/TerminalSessionService.h"
#include "BridgeModels/ToolPayloads.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe.
class CaptureService {
 public:
  CaptureService(TerminalAutomating& automation, TerminalSessionService& sessions,
                 const SessionPermissionService& permissions, Clock now)
      : automation_(automation), sessions_(sessions), permissions_(permissions), now_(std::move(now)) {}

  CapturePayload capture(const SessionTargetInput& input);

 private:
  TerminalAutomating& automation_;
  TerminalSessionService& sessions_;
  const SessionPermissionService& permissions_;
  const Clock now_;
};

}  // namespace velmora
