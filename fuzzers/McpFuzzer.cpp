// Lines from an MCP client, good and bad, to a helper whose application is not running.
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/UnixSocketError.h"
#include "VelmoraHelper/Mcp/McpServer.h"
#include "VelmoraHelper/Stdio/MessageLines.h"

namespace {

using namespace velmora;

// What the client is sent is one line of JSON.
void checkMessage(const std::string& message) {
  if (message.find('\n') != std::string::npos) std::abort();
  try {
    parseJson(message);
  } catch (const JsonDecodeError&) {
    std::abort();
  }
}

// Whether the line is a request, read without any of the helper's own code: it is answered exactly once then.
bool isRequest(std::string_view line) {
  try {
    const auto document = parseJson(line);
    const auto* message = document.if_object();
    if (message == nullptr || !message->contains("method") || !message->at("method").is_string())
      return false;
    const auto* id = message->if_contains("id");
    return id != nullptr && (id->is_string() || id->is_number());
  } catch (const JsonDecodeError&) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::size_t sent = 0;
  BridgeCalls calls([]() -> UnixSocketConnection { throw UnixSocketError::system("connect", ENOENT); });
  McpServer server({.version = "1", .clientProcessId = 1}, calls, Uuid::random,
                   [&sent](const std::string& message) {
                     checkMessage(message);
                     ++sent;
                   });
  MessageLines lines(4096);
  lines.feed({reinterpret_cast<const char*>(data), size});
  lines.finish();
  while (const auto line = lines.next()) {
    const auto before = sent;
    if (line->tooLong) {
      server.receiveTooLongLine(line->text, line->end);
    } else {
      server.receive(line->text, SteadyTime{});
    }
    calls.advance(SteadyTime{});
    if (sent > before + 1) std::abort();
    if (!line->tooLong && isRequest(line->text) && sent != before + 1) std::abort();
  }
  if (!calls.isEmpty()) std::abort();
  return 0;
}
