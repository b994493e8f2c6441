// `velmora history`: what agents asked for.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "BridgeModels/MCPRequestRecord.h"
#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

struct HistoryQuestion {
  std::string since{};    ///< Such as "90s", "30m", "1h", "2d"; empty for all.
  std::string session{};  ///< As the user writes it; empty for all.
  std::string tool{};     ///< With or without "terminal_"; empty for all.
  bool json = false;
};

/// A line a request, oldest first, or everything as JSON, newest first.
ExitStatus printHistory(const CommandContext& context, const HistoryQuestion& question);

/// The time of "90s", "30m", "1h" or "2d"; nothing for any other text.
std::optional<std::chrono::seconds> durationOf(std::string_view text);

/// A request on one line: when, how it ended, who, what, where. Nothing in it can steer a terminal.
std::string lineOf(const MCPRequestRecord& record);

}  // namespace velmora
