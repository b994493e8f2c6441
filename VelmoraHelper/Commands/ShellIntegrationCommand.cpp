// A command, and like the others in a file of its own.
#include "VelmoraHelper/Commands/ShellIntegrationCommand.h"

#include <ostream>

#include "ShellIntegration/ShellScripts.h"
#include "System/Utf8.h"

namespace velmora {

ExitStatus printShellIntegration(const CommandContext& context, const std::string& shell) {
  const ShellScript* const script = findShellScript(shell);
  if (script == nullptr) {
    context.err << "velmora: there is no integration for \"" << plainText(shell)
                << "\"; there is one for bash, zsh and fish.\n";
    return ExitStatus::usage;
  }
  context.out << script->snippet;
  return ExitStatus::success;
}

}  // namespace velmora
