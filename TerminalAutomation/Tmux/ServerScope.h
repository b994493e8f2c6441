// A tmux server that a service starts would end with the service, and every shell in it. Under systemd it is
// therefore started in a scope of its own.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// The text of /proc/self/cgroup; empty where there is none. Any thread.
std::string ownControlGroups();

/// Whether the innermost unit that `controlGroups` (as above) names is a service of systemd.
bool runsInService(std::string_view controlGroups);

/// Whether systemd-run failed before it started its program, by what it wrote to standard error.
bool saysNoScope(std::string_view errorOutput);

}  // namespace velmora
