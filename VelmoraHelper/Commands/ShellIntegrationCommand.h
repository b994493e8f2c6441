// `velmora shell-integration SHELL`: what a user's shell reads at its start.
#pragma once

#include <string>

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Prints the snippet for bash, zsh or fish; another shell is a usage error.
ExitStatus printShellIntegration(const CommandContext& context, const std::string& shell);

}  // namespace velmora
