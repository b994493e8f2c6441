// Text of others on a person's terminal.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// `text` with every control character replaced by "?", so that a tab's title cannot steer the terminal that
/// shows it. Expects UTF-8.
std::string plainText(std::string_view text);

}  // namespace velmora
