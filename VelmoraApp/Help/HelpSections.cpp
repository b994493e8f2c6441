#include "VelmoraApp/Help/HelpSections.h"

#include "BridgeModels/WireNames.h"
#include "VelmoraApp/Help/HelpToolCalls.h"
#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

namespace velmora {

namespace {

HelpPassage instruction(std::string_view text) {
  return {.kind = HelpPassage::Kind::instruction, .text = std::string(text)};
}

HelpPassage note(std::string_view text) {
  return {.kind = HelpPassage::Kind::note, .text = std::string(text)};
}

HelpPassage code(std::string text, std::string_view name, std::string_view copyHelp) {
  return {.kind = HelpPassage::Kind::code,
          .text = std::move(text),
          .name = std::string(name),
          .copyHelp = std::string(copyHelp)};
}

HelpPassage exampleCall(const HelpCopy& copy, ToolName tool) {
  return code(exampleToolCall(tool), wireName(tool), copy.toolCallCopyHelp(wireName(tool)));
}

HelpSection registration(const HelpCopy& copy, const std::string& helperPath) {
  const MCPConnectionConfiguration connection{helperPath};
  return {std::string(copy.registrationTitle),
          {instruction(copy.registrationInstruction),
           code(connection.configuration(), "mcpServers", copy.copyMCPConfiguration),
           instruction(copy.openClawJSONInstruction),
           code(connection.openClawConfiguration(), "openclaw.json", copy.copyOpenClawJSON),
           instruction(copy.openClawCLIInstruction),
           code(connection.openClawCommands(), "openclaw mcp", copy.copyOpenClawCLI),
           code(helperPath, "velmora", copy.copyHelperPath), note(copy.noNetworkText)}};
}

}  // namespace

std::vector<HelpSection> helpSections(const HelpCopy& copy, const GuideContext& context) {
  const auto tool = [&copy](std::string_view title, std::string_view what, ToolName name,
                            std::string_view remark) {
    return HelpSection{std::string(title), {instruction(what), exampleCall(copy, name), note(remark)}};
  };
  return {
      {std::string(copy.installationTitle),
       {instruction(copy.installationText),
        code(context.installPath.toStdString(), "Velmora", copy.copyInstallPath)}},
      {std::string(copy.permissionsTitle),
       {instruction(copy.permissionsInstruction), note(copy.permissionsRecovery)}},
      registration(copy, context.helperPath),
      tool(copy.statusTitle, copy.statusInstruction, ToolName::status, copy.statusNote),
      tool(copy.createSessionTitle, copy.createSessionInstruction, ToolName::createSession,
           copy.createSessionNote),
      tool(copy.sendCommandTitle, copy.sendCommandInstruction, ToolName::sendCommand, copy.sendCommandNote),
      tool(copy.specialKeyTitle, copy.specialKeyInstruction, ToolName::sendKey, copy.specialKeyNote),
      tool(copy.readOutputTitle, copy.readOutputInstruction, ToolName::readOutput, copy.readOutputNote),
      tool(copy.focusSessionTitle, copy.focusSessionInstruction, ToolName::focusSession,
           copy.focusSessionNote),
      {std::string(copy.existingSessionTitle), {instruction(copy.existingSessionNote)}}};
}

}  // namespace velmora
