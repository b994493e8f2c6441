#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

namespace velmora {

MCPConnectionConfiguration MCPConnectionConfiguration::ofRunningApplication() {
  return {QDir(QCoreApplication::applicationDirPath()).filePath("velmora").toStdString()};
}

}  // namespace velmora
