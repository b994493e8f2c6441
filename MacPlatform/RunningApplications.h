// Which applications run.
#pragma once

#include <string>

namespace velmora::mac {

/// Whether an application with this bundle identifier runs. Asks the system, not the application, so it
/// neither launches it nor needs a permission. Any thread.
bool isApplicationRunning(const std::string& bundleIdentifier);

}  // namespace velmora::mac
