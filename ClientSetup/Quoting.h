// Text as a value in the languages that clients are configured in, other than JSON. Stateless; any thread.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// `text` as one word for a POSIX shell, also an interactive one, enclosed in double quotes.
std::string shellQuoted(std::string_view text);

/// The same, but a word that means itself to every shell stays as it is.
std::string shellWord(std::string_view text);

/// `text`, which must be UTF-8, as a TOML basic string.
std::string tomlQuoted(std::string_view text);

}  // namespace velmora
