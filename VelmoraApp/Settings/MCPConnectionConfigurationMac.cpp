#include "MacPlatform/ApplicationBundle.h"
#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

namespace velmora {

MCPConnectionConfiguration MCPConnectionConfiguration::ofRunningApplication() {
  return {(mac::applicationBundlePath() / "Contents" / "Helpers" / "velmora").string()};
}

}  // namespace velmora
