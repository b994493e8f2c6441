// How many descriptors the process may have open at once.
#pragma once

#include <cstddef>

namespace velmora {

/// The limit that holds now. Any thread.
std::size_t descriptorLimit() noexcept;

/// Raises a lower limit to 1,024, as far as the system lets the user. Not further: every program that is
/// started inherits it, and those that use select(2) break beyond (FD_SETSIZE). For `main`.
void raiseDescriptorLimit() noexcept;

}  // namespace velmora
