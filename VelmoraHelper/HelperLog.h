// What the helper writes of its work to standard error, for whoever looks into why a client does not get on.
#pragma once

#include <string_view>

namespace velmora {

/// Off unless it is turned on. Says which methods and tools are called and how they end; never what a call or
/// its answer contains. Any thread.
class HelperLog {
 public:
  HelperLog() = default;
  explicit HelperLog(bool on) : on_(on) {}

  /// One line.
  void write(std::string_view text) const;

 private:
  bool on_ = false;
};

}  // namespace velmora
