// The texts of the help.
#pragma once

#include <boost/describe/class.hpp>
#include <string>
#include <string_view>

#include "VelmoraApp/Help/HelpLanguage.h"
#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

/// In reading order. Every instance has every text.
struct HelpCopy {
  std::string_view languageLabel;

  std::string_view installationTitle;
  std::string_view installationText;
  std::string_view copyInstallPath;

  std::string_view permissionsTitle;
  std::string_view permissionsInstruction;
  std::string_view permissionsRecovery;

  std::string_view registrationTitle;
  std::string_view registrationInstruction;
  std::string_view copyMCPConfiguration;
  std::string_view openClawJSONInstruction;
  std::string_view copyOpenClawJSON;
  std::string_view openClawCLIInstruction;
  std::string_view copyOpenClawCLI;
  std::string_view copyHelperPath;
  std::string_view noNetworkText;

  std::string_view statusTitle;
  std::string_view statusInstruction;
  std::string_view statusNote;

  std::string_view createSessionTitle;
  std::string_view createSessionInstruction;
  std::string_view createSessionNote;

  std::string_view sendCommandTitle;
  std::string_view sendCommandInstruction;
  std::string_view sendCommandNote;

  std::string_view specialKeyTitle;
  std::string_view specialKeyInstruction;
  std::string_view specialKeyNote;

  std::string_view readOutputTitle;
  std::string_view readOutputInstruction;
  std::string_view readOutputNote;

  std::string_view focusSessionTitle;
  std::string_view focusSessionInstruction;
  std::string_view focusSessionNote;

  std::string_view existingSessionTitle;
  std::string_view existingSessionNote;

  std::string (*toolCallCopyHelp)(std::string_view toolName);
};
BOOST_DESCRIBE_STRUCT(HelpCopy, (),
                      (languageLabel, installationTitle, installationText, copyInstallPath, permissionsTitle,
                       permissionsInstruction, permissionsRecovery, registrationTitle,
                       registrationInstruction, copyMCPConfiguration, openClawJSONInstruction,
                       copyOpenClawJSON, openClawCLIInstruction, copyOpenClawCLI, copyHelperPath,
                       noNetworkText, statusTitle, statusInstruction, statusNote, createSessionTitle,
                       createSessionInstruction, createSessionNote, sendCommandTitle, sendCommandInstruction,
                       sendCommandNote, specialKeyTitle, specialKeyInstruction, specialKeyNote,
                       readOutputTitle, readOutputInstruction, readOutputNote, focusSessionTitle,
                       focusSessionInstruction, focusSessionNote, existingSessionTitle, existingSessionNote))

/// The words on the copy buttons themselves; what each copies is in HelpCopy.
struct HelpButtonWords {
  std::string_view copy;
  std::string_view copied;
};

/// What one language says. With tmux some texts differ from those for Terminal.app.
struct HelpTexts {
  HelpCopy copyForTerminalApp;
  HelpCopy copyForTmux;
  HelpButtonWords buttonWords;
};

extern const HelpTexts englishHelp;
extern const HelpTexts koreanHelp;

inline const HelpTexts& helpTexts(HelpLanguage language) {
  return language == HelpLanguage::korean ? koreanHelp : englishHelp;
}

inline const HelpCopy& helpCopy(HelpLanguage language, GuidedTerminal terminal) {
  const auto& texts = helpTexts(language);
  return terminal == GuidedTerminal::tmux ? texts.copyForTmux : texts.copyForTerminalApp;
}

}  // namespace velmora
