#include "VelmoraApp/Help/HelpLanguage.h"

namespace velmora {

HelpLanguage helpLanguageFor(const QStringList& preferredLanguages) {
  const bool korean = !preferredLanguages.isEmpty() && preferredLanguages.first().startsWith("ko");
  return korean ? HelpLanguage::korean : HelpLanguage::english;
}

}  // namespace velmora
