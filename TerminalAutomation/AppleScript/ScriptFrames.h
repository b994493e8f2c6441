// What the adapter and the process that holds the compiled script say to each other: one request and one
// reply at a time, each a frame of four bytes (the number of those that follow, most significant first) and
// JSON.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "TerminalAutomation/AppleScript/ScriptHost.h"

namespace velmora {

/// A frame that is too long, or whose content is not what it should be.
class ScriptFrameError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct ScriptCompileRequest {
  std::string source;

  bool operator==(const ScriptCompileRequest&) const = default;
};

struct ScriptCallRequest {
  std::string handler;
  std::vector<ScriptArgument> arguments;

  bool operator==(const ScriptCallRequest&) const = default;
};

struct ScriptConsentRequest {
  std::string bundleIdentifier;
  bool asksUser = false;

  bool operator==(const ScriptConsentRequest&) const = default;
};

/// Compiling is answered with a descriptor whose `boolean` says whether the script compiles, a question for
/// consent with one whose `integer` is the answer.
using ScriptRequest = std::variant<ScriptCompileRequest, ScriptCallRequest, ScriptConsentRequest>;

/// A request or a reply with its number: a reply has that of the request that it answers.
template <class Message>
struct Numbered {
  std::int64_t number = 0;
  Message message{};
};

/// Whole frames.
std::string encodeScriptRequest(const ScriptRequest& request, std::int64_t number);
std::string encodeScriptReply(const ScriptReply& reply, std::int64_t number);

/// A frame's content, without its length. Throw ScriptFrameError.
Numbered<ScriptRequest> decodeScriptRequest(std::string_view content);
Numbered<ScriptReply> decodeScriptReply(std::string_view content);

/// The content of the frame that `bytes` begins with, once all of it is there. Throws ScriptFrameError when
/// the frame says that it is longer than any can be.
std::optional<std::string_view> scriptFrameIn(std::string_view bytes);

/// What the process with the script does: reads a request from `input`, has `engine` do it and writes the
/// reply to `output`; both block. False when nobody is there to ask or to answer, or what came is no request.
bool answerScriptRequest(ScriptEngine& engine, int input, int output);

}  // namespace velmora
