// Moves messages between two descriptors and the server.
#pragma once

#include <cstddef>

#include "VelmoraHelper/McpServer.h"

namespace velmora {

/// The longest line that is read. A request to the application is limited to 1 MiB, so that every call which
/// could succeed fits, however its text is escaped.
inline constexpr std::size_t maximumMessageBytes = std::size_t{4} << 20;

/// Answers each line that arrives at `input` with a line to `output`, one after the other, until the input
/// ends. The descriptors may be non-blocking. Throws std::system_error when reading or writing fails; the
/// caller must have SIGPIPE ignored.
void serveLines(int input, int output, McpServer& server);

}  // namespace velmora
