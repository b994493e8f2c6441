// A file of its own although short: the system's call takes other arguments elsewhere.
#include <pthread.h>

#include "System/ThreadName.h"

namespace velmora {

// Only a thread itself can name it here.
void setThreadName(const std::string& name) noexcept { pthread_setname_np(name.c_str()); }

}  // namespace velmora
