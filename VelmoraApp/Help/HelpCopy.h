// The texts of the help.
#pragma once

#include <boost/describe/class.hpp>
#include <string>
#include <string_view>

#include "VelmoraApp/AppModel/Language.h"
#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

/// In reading order. Every instance has every text.
struct HelpCopy {
  std::string languageLabel;

  std::string installationTitle;
  std::string installationText;
  std::string copyInstallPath;

  std::string permissionsTitle;
  std::string permissionsInstruction;
  std::string permissionsRecovery;

  std::string registrationTitle;
  std::string registrationInstruction;
  std::string copyMCPConfiguration;
  std::string openClawJSONInstruction;
  std::string copyOpenClawJSON;
  std::string openClawCLIInstruction;
  std::string copyOpenClawCLI;
  std::string copyHelperPath;
  std::string noNetworkText;

  std::string statusTitle;
  std::string statusInstruction;
  std::string statusNote;

  std::string createSessionTitle;
  std::string createSessionInstruction;
  std::string createSessionNote;

  std::string sendCommandTitle;
  std::string sendCommandInstruction;
  std::string sendCommandNote;

  std::string specialKeyTitle;
  std::string specialKeyInstruction;
  std::string specialKeyNote;

  std::string readOutputTitle;
  std::string readOutputInstruction;
  std::string readOutputNote;

  std::string focusSessionTitle;
  std::string focusSessionInstruction;
  std::string focusSessionNote;

  std::string existingSessionTitle;
  std::string existingSessionNote;

  std::string toolCallCopyHelp(std::string_view toolName) const;

  // The rest is on buttons.
  std::string copyCallExample;  ///< "%1" stands for the tool.
  std::string copy;
  std::string copied;
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
                       focusSessionInstruction, focusSessionNote, existingSessionTitle, existingSessionNote,
                       copyCallExample, copy, copied))

/// With tmux some texts differ from those for Terminal.app.
HelpCopy helpCopy(Language language, GuidedTerminal terminal);

}  // namespace velmora
