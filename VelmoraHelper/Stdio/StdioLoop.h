// The helper's one loop: reads messages, writes answers and runs the calls, and never waits for just one of
// them.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

#include "VelmoraHelper/Bridge/BridgeCalls.h"
#include "VelmoraHelper/Mcp/McpServer.h"
#include "VelmoraHelper/Stdio/MessageOutput.h"

namespace velmora {

/// The longest line that is read. A request to the application is limited to 1 MiB, so every call that could
/// succeed fits, however its text is escaped.
inline constexpr std::size_t maximumMessageBytes = std::size_t{4} << 20;

/// No further messages are taken while the client leaves this many bytes of answers unread.
inline constexpr std::size_t maximumUnreadBytes = std::size_t{1} << 20;

/// Once the client has closed the input, running calls get this long to end, and the client this long to take
/// the next piece of its answers.
inline constexpr std::chrono::milliseconds graceAfterInput{500};

/// How often to check that the client is still there.
inline constexpr std::chrono::milliseconds clientCheckInterval{500};

/// Serves the lines that arrive at the descriptor `input` until it ends or `clientIsGone` returns true: a
/// killed client may leave the input open in another program. A last line without an end counts. Throws
/// std::system_error when reading or writing fails.
void serveLines(int input, MessageOutput& output, McpServer& server, BridgeCalls& calls,
                const std::function<bool()>& clientIsGone);

}  // namespace velmora
