// The allocator keeps what was freed for later. One .cpp file per platform.
#pragma once

namespace velmora {

/// Has all threads share two of the allocator's arenas, where it has any: each keeps memory of its own, and a
/// server has a thread a connection. For `main`, before other threads start.
void shareMemoryArenas() noexcept;

/// Gives what is free back to the system. Takes milliseconds. Any thread.
void returnFreeMemory() noexcept;

}  // namespace velmora
