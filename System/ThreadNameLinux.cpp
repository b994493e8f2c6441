// A file of its own although short: the system's call takes other arguments elsewhere.
#include <pthread.h>

#include <array>

#include "System/ThreadName.h"

namespace velmora {

void setThreadName(const std::string& name) noexcept {
  // 15 bytes and the final NUL: a longer name is refused as a whole (pthread_setname_np(3)).
  std::array<char, 16> shortened{};
  name.copy(shortened.data(), shortened.size() - 1);
  pthread_setname_np(pthread_self(), shortened.data());
}

}  // namespace velmora
