#include <QtCore/QFileInfo>

#include "MacPlatform/ApplicationBundle.h"
#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

namespace velmora {

MCPConnectionConfiguration MCPConnectionConfiguration::ofRunningApplication() {
  const auto helper = (mac::applicationBundlePath() / "Contents" / "Helpers" / "velmora").string();
  return {helper, QFileInfo(QString::fromStdString(helper)).isExecutable()};
}

}  // namespace velmora
