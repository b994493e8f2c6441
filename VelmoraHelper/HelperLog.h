// What the helper writes about its work to standard error, for whoever looks into a client's trouble.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace velmora {

/// Off unless it is turned on. Says which methods and tools are called and how they end; never what a call or
/// its answer contains. Any thread.
class HelperLog {
 public:
  HelperLog() = default;
  explicit HelperLog(bool on) : on_(on) {}

  /// One line, in one call, so that lines of two programs do not mix.
  void write(std::string_view text) const {
    if (!on_) return;
    const auto line = std::string("velmora: ").append(text).append("\n");
    std::fputs(line.c_str(), stderr);
  }

 private:
  bool on_ = false;
};

}  // namespace velmora
