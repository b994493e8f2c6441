// A file of its own although short: each system has its own allocator.
#include <malloc/malloc.h>

#include "System/Memory.h"

namespace velmora {

void shareMemoryArenas() noexcept {}  // its zones do not grow with the threads

void returnFreeMemory() noexcept { ::malloc_zone_pressure_relief(nullptr, 0); }

}  // namespace velmora
