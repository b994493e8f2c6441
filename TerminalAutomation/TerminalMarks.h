// What the terminal itself is to show of the bridge, where the user wants that.
#pragma once

#include <map>
#include <string>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/Uuid.h"

namespace velmora {

struct TerminalMarks {
  struct Tab {
    Uuid session{};  ///< The system uses the names of terminals again.
    SessionPermission permission = SessionPermission::managed;

    bool operator==(const Tab&) const = default;
  };

  std::string state{};                ///< A few words, such as "paused"; empty for nothing.
  std::map<std::string, Tab> tabs{};  ///< By tty.

  bool operator==(const TerminalMarks&) const = default;
};

}  // namespace velmora
