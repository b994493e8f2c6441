#include "VelmoraApp/Help/HelpCopy.h"

namespace velmora {

const HelpTexts& helpTexts(HelpLanguage language) {
  return language == HelpLanguage::korean ? koreanHelp : englishHelp;
}

const HelpCopy& helpCopy(HelpLanguage language, GuidedTerminal terminal) {
  const auto& texts = helpTexts(language);
  return terminal == GuidedTerminal::tmux ? texts.copyForTmux : texts.copyForTerminalApp;
}

}  // namespace velmora
