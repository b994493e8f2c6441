#include "VelmoraHelper/JsonRpc.h"

#include <boost/json/parse.hpp>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"

namespace velmora {

namespace {

// Finds the text of a top-level member, because a parsed number does not say how it was written. The document
// is known to be a valid JSON object, so nothing is checked again.
class MemberText {
 public:
  explicit MemberText(std::string_view document) : text_(document) {}

  // The value of the last member `name`, as the parser counts it.
  std::string_view last(std::string_view name) {
    std::string_view found;
    position_ = text_.find('{') + 1;
    while (text_[skipTo("\"}")] == '"') {
      const auto key = takeString();
      position_ = skipTo(":") + 1;
      position_ = text_.find_first_not_of(" \t\r\n", position_);
      const auto value = takeValue();
      if (spells(key, name)) found = value;
    }
    return found;
  }

 private:
  std::size_t skipTo(const char* characters) {
    return position_ = text_.find_first_of(characters, position_);
  }

  std::string_view takeString() {
    const auto begin = position_++;
    while (text_[position_] != '"') position_ += text_[position_] == '\\' ? 2u : 1u;
    ++position_;
    return text_.substr(begin, position_ - begin);
  }

  std::string_view takeValue() {
    const auto begin = position_;
    if (text_[position_] == '"') return takeString();
    if (text_[position_] != '{' && text_[position_] != '[') {
      skipTo(",} \t\r\n");
    } else {
      std::size_t depth = 0;
      do {
        const char character = text_[skipTo("\"{}[]")];
        if (character == '"') {
          takeString();
          continue;
        }
        ++position_;
        depth = character == '{' || character == '[' ? depth + 1 : depth - 1;
      } while (depth > 0);
    }
    return text_.substr(begin, position_ - begin);
  }

  static bool spells(std::string_view quoted, std::string_view name) {
    if (quoted.find('\\') == std::string_view::npos) return quoted.substr(1, quoted.size() - 2) == name;
    const auto decoded = boost::json::parse(boost::json::string_view(quoted.data(), quoted.size()));
    return std::string_view(decoded.get_string().data(), decoded.get_string().size()) == name;
  }

  std::string_view text_;
  std::size_t position_ = 0;
};

std::optional<std::string> idOf(const boost::json::object& message, std::string_view text) {
  const auto* id = message.if_contains("id");
  if (id == nullptr) return std::nullopt;
  if (!id->is_string() && !id->is_number()) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidRequest, "The id must be a string or a number.");
  }
  return std::string(MemberText(text).last("id"));
}

boost::json::value parsed(std::string_view text) {
  try {
    return parseJson(text);
  } catch (const JsonDecodeError&) {
    throw JsonRpcFailure(JsonRpcErrorCode::parseError, "The message is not valid JSON.");
  }
}

}  // namespace

std::optional<JsonRpcRequest> parseJsonRpc(std::string_view text) {
  auto document = parsed(text);
  auto* message = document.if_object();
  if (message == nullptr) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidRequest,
                         document.is_array() ? "Batches are not supported; send one message a line."
                                             : "The message must be a JSON object.");
  }
  const auto* method = message->if_contains("method");
  if (method == nullptr && (message->contains("result") || message->contains("error"))) return std::nullopt;

  JsonRpcRequest request{.id = idOf(*message, text)};
  const auto invalid = [&request](JsonRpcErrorCode code, const std::string& problem) {
    return JsonRpcFailure(code, problem, request.id.value_or("null"));
  };
  const auto* version = message->if_contains("jsonrpc");
  if (version == nullptr || *version != "2.0") {
    throw invalid(JsonRpcErrorCode::invalidRequest, "jsonrpc must be \"2.0\".");
  }
  if (method == nullptr || !method->is_string()) {
    throw invalid(JsonRpcErrorCode::invalidRequest, "method must be a string.");
  }
  request.method.assign(method->get_string().data(), method->get_string().size());
  if (auto* params = message->if_contains("params"); params != nullptr && !params->is_null()) {
    if (!params->is_object()) throw invalid(JsonRpcErrorCode::invalidParams, "params must be an object.");
    request.params = std::move(params->get_object());
  }
  return request;
}

std::string jsonRpcResult(std::string_view id, std::string_view result) {
  std::string message;
  message.reserve(id.size() + result.size() + 40);
  return message.append(R"({"jsonrpc":"2.0","id":)")
      .append(id)
      .append(R"(,"result":)")
      .append(result)
      .append("}");
}

std::string jsonRpcError(std::string_view id, JsonRpcErrorCode code, std::string_view message) {
  JsonWriter error(JsonFormat::wire);
  error.beginObject();
  error.key("code");
  error.integer(static_cast<std::int64_t>(code));
  error.key("message");
  error.string(message);
  error.endObject();
  std::string text(R"({"jsonrpc":"2.0","id":)");
  return text.append(id).append(R"(,"error":)").append(error.take()).append("}");
}

}  // namespace velmora
