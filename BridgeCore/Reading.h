// The two services that look at a tab, terminal_read_output and terminal_capture_screen, and the limit on
// what is read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "BridgeCore/OutputWait.h"
#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/TerminalSessionService.h"
#include "BridgeModels/ToolPayloads.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

struct LimitedOutput {
  std::string text;
  std::int64_t originalCharacterCount = 0;

  /// Whether characters were cut: a count, not a flag, so it holds for values built elsewhere too.
  bool truncated() const;

  bool operator==(const LimitedOutput&) const = default;
};

/// Cuts output to a budget of characters and keeps the end, where the latest output is.
struct OutputLimiter {
  /// The last `maximumCharacters` characters (grapheme clusters) of `text`; none when it is negative. Pure.
  static LimitedOutput suffix(std::string_view text, std::int64_t maximumCharacters);
};

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
      : automation_(automation),
        sessions_(sessions),
        permissions_(permissions),
        wait_(automation, sessions, permissions) {}

  OutputReading read(const ReadOutputInput& input, const Caller& caller = {});

 private:
  OutputFound find(const ReadOutputInput& input, const TerminalSession& session, const Caller& caller);

  TerminalAutomating& automation_;
  TerminalSessionService& sessions_;
  const SessionPermissionService& permissions_;
  OutputWait wait_;
};

/// Thread-safe. The picture stays on disk for the client to read; nothing here deletes it.
class CaptureService {
 public:
  CaptureService(TerminalAutomating& automation, TerminalSessionService& sessions,
                 const SessionPermissionService& permissions, Clock now)
      : automation_(automation), sessions_(sessions), permissions_(permissions), now_(std::move(now)) {}

  CapturePayload capture(const SessionTargetInput& input, const Caller& caller = {});

 private:
  TerminalAutomating& automation_;
  TerminalSessionService& sessions_;
  const SessionPermissionService& permissions_;
  const Clock now_;
};

}  // namespace velmora
