// What the terminal of `velmora watch` can do, as its description says.
#pragma once

namespace velmora {

/// The sequence of a capability by its terminfo name ("cup"), null where the terminal has none. The library
/// keeps it as long as it knows the terminal. Belongs to the main thread.
const char* capability(const char* name);

}  // namespace velmora
