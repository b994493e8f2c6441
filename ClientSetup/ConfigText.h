// The text of a client's configuration, changed in one entry only: order, comments, indentation and every
// other byte stay as the user has them. Stateless; any thread.
#pragma once

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "BridgeModels/JSONValue.h"

namespace velmora {

/// What a configuration is written in, as its client reads it.
enum class ConfigLanguage {
  json,
  jsonWithComments,  ///< Both kinds of comments, and a comma behind the last member.
  json5,
  toml,
};

/// The text is not written in its language, or our entry cannot be changed where it stands. `what()` is a
/// phrase for the user.
class ConfigTextError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Objects and lists in each other; a text with more is refused, before it uses up the stack.
inline constexpr int mostNestedValues = 200;

/// Names that lead from the whole to one entry, such as "mcpServers", "terminal".
using ConfigPath = std::vector<std::string>;

/// A member of an entry and what it shall be; nothing takes it out.
using ConfigMember = std::pair<std::string, std::optional<JSONValue>>;

/// The members of the entry; nothing when there is none. In TOML a value other than a text or a list of
/// texts reads as null. Throws ConfigTextError.
std::optional<JSONObject> readEntry(ConfigLanguage language, std::string_view text, const ConfigPath& path);

/// `text` with these members of the entry as told; its other members stay, and what is missing on the way to
/// it is made. An empty text is a new file. Throws ConfigTextError.
std::string withEntry(ConfigLanguage language, std::string_view text, const ConfigPath& path,
                      std::span<const ConfigMember> members);

/// `text` without the entry, which must be there. Throws ConfigTextError.
std::string withoutEntry(ConfigLanguage language, std::string_view text, const ConfigPath& path);

}  // namespace velmora
