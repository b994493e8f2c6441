// JSON and its relatives with the place of everything in the text. Stateless; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "BridgeModels/JSONValue.h"
#include "ClientSetup/ConfigText.h"

namespace velmora {

struct JsonMember;

/// A value between `begin` and `end`, without the comments around it.
struct JsonNode {
  enum class Kind { object, array, text, other };

  Kind kind = Kind::other;
  std::size_t begin = 0;
  std::size_t end = 0;
  std::vector<JsonMember> members;  ///< Of an object, in their order.
  std::vector<JsonNode> elements;   ///< Of an array.
  JSONValue value;                  ///< Of anything else.
};

struct JsonMember {
  std::string key;
  std::size_t begin = 0;  ///< Of the key.
  JsonNode value{};
  std::size_t comma = std::string_view::npos;  ///< Behind it, if there is one.
};

/// The tree of a whole document. Throws ConfigTextError with the line of what is wrong.
JsonNode parseJsonTree(std::string_view text, ConfigLanguage dialect);

/// The place of the member among the object's, nothing when it has none. Throws ConfigTextError when it has
/// two.
std::optional<std::size_t> memberOf(const JsonNode& object, std::string_view key);

JSONValue valueOf(const JsonNode& node);

}  // namespace velmora
