// What a thread is called in debuggers, `top` and crash reports. One .cpp file per platform.
#pragma once

#include <string>

namespace velmora {

/// Names the calling thread. Linux keeps the first 15 bytes. Any thread.
void setThreadName(const std::string& name) noexcept;

}  // namespace velmora
