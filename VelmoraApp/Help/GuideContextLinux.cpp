#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>

#include "VelmoraApp/Help/GuideContext.h"

namespace velmora {

GuideContext GuideContext::ofThisSystem() {
  return {.terminal = GuidedTerminal::tmux,
          .preferredLanguages = QLocale::system().uiLanguages(),
          .installPath = QCoreApplication::applicationFilePath(),
          .connection = MCPConnectionConfiguration::ofRunningApplication()};
}

}  // namespace velmora
