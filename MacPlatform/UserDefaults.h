// The application's own user defaults.
#pragma once

#include <optional>
#include <string>

namespace velmora::mac {

/// The standard defaults of the running application: the domain of its bundle identifier. Any thread. A key
/// that is not set, or holds something that cannot be read that way, reads as nothing.
std::optional<bool> boolDefault(const std::string& key);
std::optional<std::string> textDefault(const std::string& key);

void setBoolDefault(const std::string& key, bool value);
void setTextDefault(const std::string& key, const std::string& value);

}  // namespace velmora::mac
