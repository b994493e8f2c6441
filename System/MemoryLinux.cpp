// A file of its own although short: each system has its own allocator.
#include <malloc.h>

#include "System/Memory.h"

namespace velmora {

void shareMemoryArenas() noexcept { ::mallopt(M_ARENA_MAX, 2); }

void returnFreeMemory() noexcept { ::malloc_trim(0); }

}  // namespace velmora
