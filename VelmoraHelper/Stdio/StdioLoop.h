// The helper's one loop: messages from the client, answers to it, and the calls between, none of which is
// ever waited for alone.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

#include "VelmoraHelper/Bridge/BridgeCalls.h"
#include "VelmoraHelper/Mcp/McpServer.h"
#include "VelmoraHelper/Stdio/MessageOutput.h"

namespace velmora {

/// The longest line that is read. A request to the application is limited to 1 MiB, so that every call which
/// could succeed fits, however its text is escaped.
inline constexpr std::size_t maximumMessageBytes = std::size_t{4} << 20;

/// No further messages are taken while the client leaves so much of the answers unread.
inline constexpr std::size_t maximumUnreadBytes = std::size_t{1} << 20;

/// Once the client has closed the input, calls that are still under way get this long to end, and the client
/// to take the next piece of what it was sent.
inline constexpr std::chrono::milliseconds graceAfterInput{500};

/// How often it is looked whether the client is still there.
inline constexpr std::chrono::milliseconds clientCheckInterval{500};

/// Serves the lines that arrive at the descriptor `input` until it ends, or the client has gone, which
/// `clientIsGone` tells: a client that was killed may leave the input open in another program's hands. Lines
/// without an end count when the input ends. Throws std::system_error when reading or writing fails.
void serveLines(int input, MessageOutput& output, McpServer& server, BridgeCalls& calls,
                const std::function<bool()>& clientIsGone);

}  // namespace velmora
