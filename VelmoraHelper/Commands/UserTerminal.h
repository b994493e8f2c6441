// The terminal at which the user of a command sits, whatever its standard streams are.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace velmora {

/// Asks for a line at the controlling terminal and waits for it, for as long as `patience` allows. Nothing
/// when there is no terminal, or nobody typed.
std::optional<std::string> lineTypedAtTerminal(const std::string& prompt, std::chrono::seconds patience);

}  // namespace velmora
