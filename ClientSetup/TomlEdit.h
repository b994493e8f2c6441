// One table of a TOML document changed, as ConfigText.h says it. Stateless; any thread.
#pragma once

#include "ClientSetup/ConfigText.h"

namespace velmora {

std::optional<JSONObject> readTomlTable(std::string_view text, const ConfigPath& path);
std::string withTomlTable(std::string_view text, const ConfigPath& path,
                          std::span<const ConfigMember> members);
std::string withoutTomlTable(std::string_view text, const ConfigPath& path);

/// A table of its own, without a newline at its end. The path's names must be bare keys.
std::string tomlTable(const ConfigPath& path, std::span<const ConfigMember> members);

}  // namespace velmora
