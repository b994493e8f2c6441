// Whether the application starts when the person logs in, as the system knows it.
#pragma once

#include <filesystem>
#include <memory>

#include "System/Environment.h"

namespace velmora {

/// For the main thread. The system keeps the answer and others change it too, so it is asked each time.
class LoginItem {
 public:
  virtual ~LoginItem() = default;

  virtual bool isEnabled() const = 0;

  /// Throws what derives from std::exception when the system refuses; then nothing has changed.
  virtual void setEnabled(bool enabled) = 0;
};

/// The one of this platform, for the running program at `program`. Where the program has moved since it was
/// enabled, the system is told its new place.
std::unique_ptr<LoginItem> makeLoginItem(const Environment& environment,
                                         const std::filesystem::path& program);

}  // namespace velmora
