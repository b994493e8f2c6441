#include "MacPlatform/NoUpdater.h"

namespace velmora::mac {

std::unique_ptr<Updater> makeUpdater() { return std::make_unique<NoUpdater>(); }

}  // namespace velmora::mac
