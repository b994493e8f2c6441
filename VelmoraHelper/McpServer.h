// The Model Context Protocol, server side: answers one JSON-RPC message after another.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "VelmoraHelper/JsonRpc.h"
#include "VelmoraHelper/ToolCaller.h"

namespace velmora {

/// Serves the revisions 2025-06-18 and 2025-11-25. A client that asks for tools without having initialised
/// is served all the same. Holds nothing but what the client said of itself; not thread-safe.
class McpServer {
 public:
  struct Identity {
    std::string version;             ///< Of this program.
    std::int32_t clientProcessId{};  ///< Of the process that launched it.
  };

  McpServer(Identity identity, ToolCaller caller);

  /// The answer to the message that `line` holds, without a line end; nothing for a notification or a
  /// response. Never throws for the message's sake: every request is answered, nonsense with an error.
  std::optional<std::string> answer(std::string_view line);

  /// The answer to a line that was too long to be read.
  static std::string answerToTooLongLine();

 private:
  std::string resultOf(const JsonRpcRequest& request);
  std::string initialize(const boost::json::object& params);
  std::string callTool(const boost::json::object& params) const;

  std::string version_;
  LocalClientInput client_;
  ToolCaller caller_;
};

}  // namespace velmora
