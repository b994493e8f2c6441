#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

namespace velmora {

MCPConnectionConfiguration MCPConnectionConfiguration::ofRunningApplication() {
  const QFileInfo helper(QDir(QCoreApplication::applicationDirPath()), "velmora");
  return {helper.filePath().toStdString(), helper.isExecutable()};
}

}  // namespace velmora
