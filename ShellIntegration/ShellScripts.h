// The scripts by which a shell marks its commands and notes how the last one ended.
#pragma once

#include <array>
#include <string_view>

namespace velmora {

struct ShellScript {
  std::string_view shell;    ///< The name of its program: "bash".
  std::string_view snippet;  ///< What the user's file of start-up commands may hold, or the bridge's.
  /// What comes before it in the file that a shell of the bridge's own windows reads first; empty for fish,
  /// which is told the snippet's file.
  std::string_view start;
};

/// bash, zsh and fish.
extern const std::array<ShellScript, 3> shellScripts;

/// Nothing for another shell.
const ShellScript* findShellScript(std::string_view shell);

}  // namespace velmora
