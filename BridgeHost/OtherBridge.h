// Another bridge of the same user that serves at the place where ours would, or that has the data folder: who
// it is, and how to end it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>

#include "System/RunningProcess.h"

namespace velmora {

struct OtherBridge {
  std::optional<pid_t> process{};  ///< Absent when it cannot be told, such as of one too busy to be asked.
  RunningProcess about{};
};

/// Who answers at the socket; nothing when nobody does. Never waits. Any thread.
std::optional<OtherBridge> otherBridgeAt(const std::filesystem::path& socketURL);

/// Asks `process` to end, as a service manager would, and waits until it has ended. Throws
/// std::runtime_error, with a sentence for the user, when it is not, or no longer, the one that `find` finds,
/// or does not end in time. Any thread.
void endOtherBridge(const std::function<std::optional<OtherBridge>()>& find, std::optional<pid_t> process,
                    std::chrono::milliseconds patience = std::chrono::seconds(10));

}  // namespace velmora
