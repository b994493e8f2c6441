#include "TerminalAutomation/Tmux/ServerScope.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace velmora {

std::string ownControlGroups() {
  std::ifstream file("/proc/self/cgroup");
  return {std::istreambuf_iterator<char>(file), {}};
}

bool runsInService(std::string_view controlGroups) {
  // "0::/user.slice/user@1000.service/app.slice/x.service", or on older systems "1:name=systemd:/...".
  for (std::string_view rest = controlGroups; !rest.empty();) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    if (!line.starts_with("0::") && line.find(":name=systemd:") == std::string_view::npos) continue;
    // A service may divide its group further, into parts that are no units.
    while (line.find('/') != std::string_view::npos) {
      if (line.ends_with(".service")) return true;
      if (line.ends_with(".scope") || line.ends_with(".slice")) break;
      line = line.substr(0, line.rfind('/'));
    }
  }
  return false;
}

bool saysNoScope(std::string_view errorOutput) {
  // tmux's own messages begin with small letters.
  return errorOutput.find("Failed to ") != std::string_view::npos ||
         errorOutput.starts_with("System has not been booted");
}

}  // namespace velmora
