#include "System/DescriptorLimit.h"

#include <sys/resource.h>

#include <algorithm>

namespace velmora {

namespace {

constexpr rlim_t wanted = 1024;

}  // namespace

std::size_t descriptorLimit() noexcept {
  struct rlimit limit {};
  return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? static_cast<std::size_t>(limit.rlim_cur) : wanted;
}

void raiseDescriptorLimit() noexcept {
  struct rlimit limit {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= wanted) return;
  limit.rlim_cur = std::min(wanted, limit.rlim_max);
  ::setrlimit(RLIMIT_NOFILE, &limit);  // without it fewer clients are served at once
}

}  // namespace velmora
