#include "VelmoraHelper/Mcp/McpServer.h"

#include "BridgeModels/Json/JsonEncoding.h"
#include "VelmoraHelper/Tools/ArgumentCheck.h"
#include "VelmoraHelper/Tools/ToolResultJson.h"

namespace velmora {

namespace {

constexpr std::chrono::seconds progressInterval{1};

JsonRpcFailure invalidParams(const std::string& message) {
  return JsonRpcFailure(JsonRpcErrorCode::invalidParams, message);
}

ToolName toolOf(const boost::json::object& params) {
  const auto name = stringMember(params, "name");
  if (!name) throw invalidParams("name must be a string.");
  const auto tool = fromWireName<ToolName>(*name);
  if (!tool) throw invalidParams("Unknown tool: " + *name);
  return *tool;
}

JsonMembers argumentsOf(const boost::json::object& params) {
  static const boost::json::value none(boost::json::object_kind);
  const auto* value = params.if_contains("arguments");
  if (value == nullptr || value->is_null()) return {&none};
  if (!value->is_object()) throw invalidParams("arguments must be an object.");
  return {value};
}

StructuredError invalidArgument(ToolName tool, std::string fault) {
  return {.code = ErrorCode::invalidArgument,
          .message = std::move(fault),
          .operation = std::string(wireName(tool)),
          .recoverySuggestion = "Correct the request arguments and try again."};
}

// The list has one page, so the server never hands out a cursor.
void expectFirstPage(const boost::json::object& params) {
  const auto* cursor = params.if_contains("cursor");
  if (cursor != nullptr && !cursor->is_null()) throw invalidParams("Invalid cursor");
}

}  // namespace

McpServer::McpServer(Options options, BridgeCalls& calls, UuidSource newId, Send send, HelperLog log)
    : options_(std::move(options)),
      answers_(options_.version, options_.form),
      calls_(calls),
      newId_(std::move(newId)),
      send_(std::move(send)),
      log_(log) {}

void McpServer::receive(std::string_view line, SteadyTime now) {
  try {
    auto message = parseJsonRpc(line);
    auto batch = session_ && hasBatches(session_->revision) ? batchIn(message) : std::nullopt;
    if (!batch) return receiveOne(std::move(message), {}, now);
    const Reply reply{std::make_shared<BatchAnswer>(batch->size(), send_)};
    for (auto& one : *batch) receiveOne(std::move(one), reply, now);
  } catch (const JsonRpcFailure& failure) {
    refuse({}, failure);
  }
}

void McpServer::receiveTooLongLine(std::string_view beginning, std::string_view end) {
  refuse({}, JsonRpcFailure(JsonRpcErrorCode::invalidRequest, "The message is too long.")
                 .withId(jsonRpcIdAtAnEnd(beginning, end)));
}

void McpServer::receiveOne(JsonRpcMessage message, const Reply& reply, SteadyTime now) {
  try {
    const auto request = requestIn(std::move(message));
    if (request && request->id) return serve(*request, reply, now);
    if (request && request->method == "notifications/cancelled") cancelCall(request->params);
    if (reply.batch) reply.batch->leaveOut();
  } catch (const JsonRpcFailure& failure) {
    refuse(reply, failure);
  }
}

void McpServer::serve(const JsonRpcRequest& request, const Reply& reply, SteadyTime now) {
  try {
    log_.write("received " + encodeJson(request.method));
    if (request.method == "initialize") {
      if (reply.batch) {
        throw JsonRpcFailure(JsonRpcErrorCode::invalidRequest, "initialize must not be part of a batch.");
      }
      return answer(reply, jsonRpcResult(*request.id, initialize(request.params)));
    }
    const auto context = contextOf(request);
    if (request.method == "tools/call") return startCall(request, context, reply, now);
    answer(reply, jsonRpcResult(*request.id, resultOf(request, context)));
  } catch (JsonRpcFailure& failure) {
    refuse(reply, std::move(failure).withId(request.id));
  } catch (const std::exception&) {  // the client must get an answer whatever happens
    refuse(
        reply,
        JsonRpcFailure(JsonRpcErrorCode::internalError, "The helper failed to do this.").withId(request.id));
  }
}

RequestContext McpServer::contextOf(const JsonRpcRequest& request) const {
  if (auto stated = statedContext(request.params)) return std::move(*stated);
  if (request.method == "server/discover") {
    throw invalidParams("server/discover needs _meta with io.modelcontextprotocol/protocolVersion.");
  }
  if (session_) return *session_;
  if (request.method == "ping") return {};
  throw invalidParams(
      "Begin with initialize, or say in _meta which revision the request speaks "
      "(io.modelcontextprotocol/protocolVersion and io.modelcontextprotocol/clientCapabilities).");
}

std::string McpServer::resultOf(const JsonRpcRequest& request, const RequestContext& context) {
  if (request.method == "tools/list") {
    expectFirstPage(request.params);
    return answers_.toolList(context.revision);
  }
  const bool stateless = isStateless(context.revision);
  if (request.method == "server/discover" && stateless) return answers_.discover();
  if (request.method == "ping" && !stateless) return "{}";
  throw JsonRpcFailure(JsonRpcErrorCode::methodNotFound, "Unknown method: " + request.method);
}

std::string McpServer::initialize(const boost::json::object& params) {
  const auto asked = stringMember(params, "protocolVersion");
  if (!asked) throw invalidParams("protocolVersion must be a string.");
  auto revision = fromWireName<ProtocolRevision>(*asked).value_or(latestWithHandshake);
  if (isStateless(revision)) revision = latestWithHandshake;
  session_ = {.revision = revision, .client = clientNameOf(params.if_contains("clientInfo"))};
  return answers_.initialize(revision);
}

void McpServer::startCall(const JsonRpcRequest& request, const RequestContext& context, const Reply& reply,
                          SteadyTime now) {
  const auto tool = toolOf(request.params);
  const auto arguments = argumentsOf(request.params);
  const auto& key = request.idKey;
  if (running_.contains(key)) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidRequest, "A call with this id is still under way.");
  }
  const bool isExtended = options_.form == ToolForm::extended;
  auto progressToken = progressTokenOf(request.params);
  const LocalControlCall<JsonMembers> call{
      .requestId = newId_(),
      .client = {.name = context.client.name,
                 .version = context.client.version,
                 .processId = options_.clientProcessId},
      .operation = tool,
      .arguments = arguments,
      .extended = isExtended ? std::optional(true) : std::nullopt,
      .progress = isExtended && progressToken ? std::optional(true) : std::nullopt};
  BridgeRequest bridgeRequest(call);
  RunningCall running{.id = *request.id,
                      .tool = tool,
                      .revision = context.revision,
                      .reply = reply,
                      .started = now,
                      .progressToken = std::move(progressToken)};
  if (auto fault = argumentFault(tool, arguments.value->get_object(), options_.form)) {
    return answerCall(running, BridgeAnswer(bridgeRequest, invalidArgument(tool, std::move(*fault))));
  }
  const bool mustAskFirst =
      isExtended && !knowsExtendedForm_ && usesExtendedForm(tool, arguments.value->get_object());
  running.call = mustAskFirst ? askForExtendedForm(key, std::move(bridgeRequest), context.client, now)
                              : send(key, std::move(bridgeRequest), now);
  running_.insert({key, std::move(running)});
}

BridgeCalls::Id McpServer::send(const std::string& key, BridgeRequest request, SteadyTime now) {
  return calls_.start(
      std::move(request),
      [this, key](const BridgeAnswer& bridgeAnswer) {
        if (bridgeAnswer.result.ok) knowsExtendedForm_ = bridgeAnswer.result.extended.value_or(false);
        answerCall(running_.extract(key).mapped(), bridgeAnswer);
      },
      now, [this, key](std::string lastLine) { running_.at(key).lastLine = std::move(lastLine); });
}

// An application that knows only the plain form would ignore what the call asks for, and press Return.
BridgeCalls::Id McpServer::askForExtendedForm(const std::string& key, BridgeRequest request,
                                              const ClientName& client, SteadyTime now) {
  static const boost::json::value none(boost::json::object_kind);
  const LocalControlCall<JsonMembers> question{
      .requestId = newId_(),
      .client = {.name = client.name, .version = client.version, .processId = options_.clientProcessId},
      .operation = ToolName::status,
      .arguments = {&none},
      .extended = true};
  return calls_.start(
      BridgeRequest(question),
      [this, key, now, request = std::move(request)](const BridgeAnswer& answer) {
        knowsExtendedForm_ = answer.result.extended.value_or(false);
        if (knowsExtendedForm_) {
          running_.at(key).call = send(key, request, now);
          return;
        }
        auto error = answer.result.error.value_or(StructuredError{
            .code = ErrorCode::bridgeUnavailable,
            .message = "The running Velmora is older than this helper and knows only the plain "
                       "form of the tools; nothing was sent.",
            .recoverySuggestion = "Ask the user to restart Velmora, or leave out what only the "
                                  "extended form has."});
        error.operation = std::string(wireName(request.tool));
        answerCall(running_.extract(key).mapped(), BridgeAnswer(request, std::move(error)));
      },
      now);
}

void McpServer::answerCall(const RunningCall& call, const BridgeAnswer& bridgeAnswer) {
  log_.write(std::string(wireName(call.tool)) + (bridgeAnswer.result.ok ? " succeeded" : " failed"));
  JsonWriter result(JsonFormat::people);
  result.beginObject();
  writeToolResult(result, call.tool, bridgeAnswer, call.revision, options_.largestInlinePicture);
  if (isStateless(call.revision)) answers_.writeStatelessMembers(result);
  result.endObject();
  answer(call.reply, jsonRpcResult(call.id, result.take()));
}

void McpServer::cancelCall(const boost::json::object& params) {
  const auto* id = params.if_contains("requestId");
  if (id == nullptr) return;
  const auto cancelled = running_.extract(jsonRpcIdKey(*id));
  if (!cancelled) return;  // unknown, or answered meanwhile
  calls_.cancel(cancelled.mapped().call);
  if (const auto& batch = cancelled.mapped().reply.batch) batch->leaveOut();
}

void McpServer::answer(const Reply& reply, std::string message) {
  if (reply.batch) {
    reply.batch->add(message);
  } else {
    send_(std::move(message));
  }
}

void McpServer::refuse(const Reply& reply, const JsonRpcFailure& failure) {
  auto id = failure.id();
  if (!id && session_ && !leavesOutUnknownIds(session_->revision)) id = "null";
  answer(reply, jsonRpcError(id, failure));
}

SteadyTime McpServer::progressTime(const RunningCall& call) {
  return call.started + (call.progress + 1) * progressInterval;
}

void McpServer::sendProgress(SteadyTime now) {
  for (auto& [key, call] : running_) {
    if (!call.progressToken || now < progressTime(call)) continue;
    call.progress = std::chrono::duration_cast<std::chrono::seconds>(now - call.started).count();
    JsonWriter params(JsonFormat::wire);
    params.beginObject();
    params.key("progressToken");
    params.raw(*call.progressToken);
    writeMember(params, "progress", call.progress);
    writeMember(params, "message",
                call.lastLine.empty() ? "Waiting for Velmora to answer " + std::string(wireName(call.tool))
                                      : call.lastLine);
    params.endObject();
    send_(jsonRpcNotification("notifications/progress", params.take()));
  }
}

std::optional<SteadyTime> McpServer::nextProgress() const {
  std::optional<SteadyTime> next;
  for (const auto& [key, call] : running_) {
    if (!call.progressToken) continue;
    const auto time = progressTime(call);
    if (!next || time < *next) next = time;
  }
  return next;
}

}  // namespace velmora
