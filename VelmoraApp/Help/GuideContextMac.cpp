#include "MacPlatform/PreferredLanguages.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Help/GuideContext.h"

namespace velmora {

GuideContext GuideContext::ofThisSystem() {
  QStringList languages;
  for (const auto& language : mac::preferredLanguages()) languages.append(text(language));
  return {.terminal = GuidedTerminal::terminalApp,
          .preferredLanguages = languages,
          .installPath = "/Applications/Velmora.app",
          .connection = MCPConnectionConfiguration::ofRunningApplication()};
}

}  // namespace velmora
