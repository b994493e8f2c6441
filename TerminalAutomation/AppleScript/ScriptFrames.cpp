#include "TerminalAutomation/AppleScript/ScriptFrames.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <utility>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "System/FileDescriptor.h"

namespace velmora {

BOOST_DESCRIBE_STRUCT(ScriptDescriptor, (), (text, integer, boolean, items))
BOOST_DESCRIBE_STRUCT(ScriptFailure, (), (number))

namespace {

constexpr std::size_t headerSize = 4;
constexpr std::size_t longestContent = std::size_t{64} << 20;

/// One of the three texts stands in it; `arguments` are the handler's, `asksUser` belongs to `consentFor`.
struct RequestContent {
  std::int64_t number = 0;
  std::optional<std::string> source{};
  std::optional<std::string> handler{};
  std::optional<std::string> consentFor{};
  std::vector<JSONValue> arguments{};
  bool asksUser = false;
};
BOOST_DESCRIBE_STRUCT(RequestContent, (), (number, source, handler, consentFor, arguments, asksUser))

struct ReplyContent {
  std::int64_t number = 0;
  std::optional<ScriptDescriptor> value{};
  std::optional<ScriptFailure> failure{};
};
BOOST_DESCRIBE_STRUCT(ReplyContent, (), (number, value, failure))

std::string framed(const std::string& content) {
  if (content.size() > longestContent) throw ScriptFrameError("a frame is too long");
  std::string frame;
  frame.reserve(headerSize + content.size());
  for (int shift = 24; shift >= 0; shift -= 8) {
    frame.push_back(static_cast<char>(static_cast<unsigned char>(content.size() >> shift)));
  }
  return frame + content;
}

std::size_t contentSize(std::string_view header) {
  std::size_t size = 0;
  for (const char byte : header) size = size << 8 | static_cast<unsigned char>(byte);
  if (size > longestContent) throw ScriptFrameError("a frame is too long");
  return size;
}

ScriptArgument argumentOf(const JSONValue& value) {
  if (const auto* text = value.string()) return *text;
  if (const auto* boolean = std::get_if<bool>(&value.storage)) return *boolean;
  if (const auto* integer = std::get_if<std::int64_t>(&value.storage)) {
    const auto narrow = static_cast<std::int32_t>(*integer);
    if (narrow == *integer) return narrow;
  }
  throw ScriptFrameError("an argument is no text, 32-bit integer or boolean");
}

template <class Content>
Content decoded(std::string_view content) {
  try {
    return decodeJson<Content>(content);
  } catch (const JsonDecodeError& error) {
    throw ScriptFrameError(error.what());
  }
}

/// Reads exactly `size` bytes; false when the stream ends before.
bool readAll(int input, std::string& bytes, std::size_t size) {
  bytes.resize(size);
  for (std::size_t done = 0; done < size;) {
    const auto count = ::read(input, bytes.data() + done, size - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

ScriptReply replyTo(ScriptEngine& engine, const ScriptRequest& request) {
  if (const auto* compile = std::get_if<ScriptCompileRequest>(&request)) {
    return ScriptDescriptor{.boolean = engine.compile(compile->source)};
  }
  if (const auto* consent = std::get_if<ScriptConsentRequest>(&request)) {
    return ScriptDescriptor{.integer = engine.consent(consent->bundleIdentifier, consent->asksUser)};
  }
  const auto& call = std::get<ScriptCallRequest>(request);
  return engine.call(call.handler, call.arguments);
}

}  // namespace

std::string encodeScriptRequest(const ScriptRequest& request, std::int64_t number) {
  RequestContent content{.number = number};
  if (const auto* compile = std::get_if<ScriptCompileRequest>(&request)) {
    content.source = compile->source;
  } else if (const auto* consent = std::get_if<ScriptConsentRequest>(&request)) {
    content.consentFor = consent->bundleIdentifier;
    content.asksUser = consent->asksUser;
  } else {
    const auto& call = std::get<ScriptCallRequest>(request);
    content.handler = call.handler;
    for (const auto& argument : call.arguments) {
      content.arguments.push_back(std::visit([](const auto& value) { return JSONValue(value); }, argument));
    }
  }
  return framed(encodeJson(content));
}

std::string encodeScriptReply(const ScriptReply& reply, std::int64_t number) {
  ReplyContent content{.number = number};
  if (const auto* value = std::get_if<ScriptDescriptor>(&reply)) {
    content.value = *value;
  } else {
    content.failure = std::get<ScriptFailure>(reply);
  }
  return framed(encodeJson(content));
}

Numbered<ScriptRequest> decodeScriptRequest(std::string_view text) {
  auto content = decoded<RequestContent>(text);
  if (content.source.has_value() + content.handler.has_value() + content.consentFor.has_value() != 1) {
    throw ScriptFrameError("a request wants to compile, to call or to know of consent");
  }
  if (content.source) return {content.number, ScriptCompileRequest{*std::move(content.source)}};
  if (content.consentFor) {
    return {content.number, ScriptConsentRequest{*std::move(content.consentFor), content.asksUser}};
  }
  ScriptCallRequest call{.handler = *std::move(content.handler), .arguments = {}};
  for (const auto& value : content.arguments) call.arguments.push_back(argumentOf(value));
  return {content.number, std::move(call)};
}

Numbered<ScriptReply> decodeScriptReply(std::string_view text) {
  auto content = decoded<ReplyContent>(text);
  if (content.value.has_value() == content.failure.has_value()) {
    throw ScriptFrameError("a reply has a value, or says of a failure");
  }
  if (content.failure) return {content.number, *content.failure};
  return {content.number, *std::move(content.value)};
}

std::optional<std::string_view> scriptFrameIn(std::string_view bytes) {
  if (bytes.size() < headerSize) return std::nullopt;
  const auto size = contentSize(bytes.substr(0, headerSize));
  if (bytes.size() < headerSize + size) return std::nullopt;
  return bytes.substr(headerSize, size);
}

bool answerScriptRequest(ScriptEngine& engine, int input, int output) {
  std::string bytes;
  try {
    if (!readAll(input, bytes, headerSize) || !readAll(input, bytes, contentSize(bytes))) return false;
    const auto [number, request] = decodeScriptRequest(bytes);
    const std::string reply = encodeScriptReply(replyTo(engine, request), number);
    return writeWith([output](const char* data, std::size_t size) { return ::write(output, data, size); },
                     reply)
        .empty();
  } catch (const ScriptFrameError&) {
    return false;
  }
}

}  // namespace velmora
