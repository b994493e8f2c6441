// The server side of the Model Context Protocol: takes messages one by one and sends the answers.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "BridgeModels/Uuid.h"
#include "VelmoraHelper/Bridge/BridgeCalls.h"
#include "VelmoraHelper/HelperLog.h"
#include "VelmoraHelper/Mcp/BatchAnswer.h"
#include "VelmoraHelper/Mcp/RequestContext.h"
#include "VelmoraHelper/Mcp/ServerAnswers.h"
#include "VelmoraHelper/Protocol/JsonRpc.h"

namespace velmora {

/// Serves clients of both eras in one process: a request that states its revision in `_meta` is served by
/// itself; all others belong to the session that `initialize` began. Everything but a tool call is answered
/// at once; a tool call is answered when the application has answered it, and other messages are served
/// meanwhile. Not thread-safe.
class McpServer {
 public:
  struct Options {
    std::string version;                       ///< Of this program.
    std::int32_t clientProcessId{};            ///< Of the process that launched it.
    std::size_t largestInlinePicture = 60000;  ///< Bytes of a PNG file; larger ones are only linked.
    ToolForm form = ToolForm::plain;           ///< In which the tools are offered.
  };

  /// Calls go through `calls`, which must outlive the server's last call; messages go to `send`.
  McpServer(Options options, BridgeCalls& calls, UuidSource newId, Send send, HelperLog log = {});
  McpServer(const McpServer&) = delete;
  McpServer& operator=(const McpServer&) = delete;

  /// Takes the message in `line`, which has no line end. Never throws because of the message: every request
  /// is answered, a malformed one with an error.
  void receive(std::string_view line, SteadyTime now);

  /// Call this for a line that was too long to read, with what was kept of its two ends.
  void receiveTooLongLine(std::string_view beginning, std::string_view end);

  /// Sends progress for running calls whose clients asked for it, once a second.
  void sendProgress(SteadyTime now);
  std::optional<SteadyTime> nextProgress() const;

 private:
  /// Where the answer to a message goes: to the client, or into the answer to its batch.
  struct Reply {
    std::shared_ptr<BatchAnswer> batch{};
  };
  struct RunningCall {
    BridgeCalls::Id call = 0;
    std::string id;  // JSON text
    ToolName tool;
    ProtocolRevision revision;
    Reply reply;
    SteadyTime started;
    std::optional<std::string> progressToken{};
    std::int64_t progress = 0;  // the last value sent
    std::string lastLine{};     // of the terminal, when the application has told
  };

  void receiveOne(JsonRpcMessage message, const Reply& reply, SteadyTime now);
  void serve(const JsonRpcRequest& request, const Reply& reply, SteadyTime now);
  RequestContext contextOf(const JsonRpcRequest& request) const;
  std::string resultOf(const JsonRpcRequest& request, const RequestContext& context);
  std::string initialize(const boost::json::object& params);
  void startCall(const JsonRpcRequest& request, const RequestContext& context, const Reply& reply,
                 SteadyTime now);
  BridgeCalls::Id send(const std::string& key, BridgeRequest request, SteadyTime now);
  BridgeCalls::Id askForExtendedForm(const std::string& key, BridgeRequest request, const ClientName& client,
                                     SteadyTime now);
  void answerCall(const RunningCall& call, const BridgeAnswer& bridgeAnswer);
  void cancelCall(const boost::json::object& params);
  void answer(const Reply& reply, std::string message);
  void refuse(const Reply& reply, const JsonRpcFailure& failure);
  static SteadyTime progressTime(const RunningCall& call);

  const Options options_;
  ServerAnswers answers_;
  BridgeCalls& calls_;
  const UuidSource newId_;
  const Send send_;
  const HelperLog log_;
  std::optional<RequestContext> session_{};       // begun with `initialize`
  std::map<std::string, RunningCall> running_{};  // by the key of the request's id
  bool knowsExtendedForm_ = false;                // the application, as far as it has been heard
};

}  // namespace velmora
