// For a build without Sparkle; a file of its own because CMake picks one of the two.
#include "MacPlatform/Updater.h"

namespace velmora::mac {

std::unique_ptr<Updater> makeUpdater() { return nullptr; }

}  // namespace velmora::mac
