#include "VelmoraApp/Help/HelpToolCalls.h"
#include "VelmoraApp/Help/HelpViewModel.h"
#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/ModelRows.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::SizeIs;
using testing::texts;

GuideContext contextFor(GuidedTerminal terminal = GuidedTerminal::terminalApp) {
  return {.terminal = terminal,
          .preferredLanguages = {},
          .installPath = "/Applications/Velmora.app",
          .helperPath = "/somewhere/velmora"};
}

struct Passage {
  std::string text, name, copyHelp;
  bool isNote, isCode;
};

std::vector<Passage> passagesOf(const QVariant& section) {
  std::vector<Passage> passages;
  for (const auto& entry : section.toMap()["passages"].toList()) {
    const auto values = entry.toMap();
    passages.push_back({values["text"].toString().toStdString(), values["name"].toString().toStdString(),
                        values["copyHelp"].toString().toStdString(), values["isNote"].toBool(),
                        values["isCode"].toBool()});
  }
  return passages;
}

std::vector<Passage> codeOf(const QVariant& section) {
  std::vector<Passage> code;
  for (auto& passage : passagesOf(section)) {
    if (passage.isCode) code.push_back(std::move(passage));
  }
  return code;
}

// All that is read or, on a copy button, looked at, from top to bottom.
std::vector<std::string> wordsOf(const HelpViewModel& help) {
  std::vector<std::string> words{help.languageLabel().toStdString()};
  for (const auto& section : help.sections()) {
    words.push_back(section.toMap()["title"].toString().toStdString());
    for (const auto& passage : passagesOf(section)) {
      words.push_back(passage.isCode ? passage.copyHelp : passage.text);
    }
  }
  return words;
}

TEST(HelpViewModel, OpensInTheLanguageOfTheWindow) {
  EXPECT_EQ(HelpViewModel(contextFor(), Language::korean).language(), Language::korean);
  EXPECT_EQ(HelpViewModel(contextFor(), Language::english).language(), Language::english);
}

TEST(HelpViewModel, OffersBothLanguagesByTheirOwnNames) {
  HelpViewModel help(contextFor(), Language::english);
  EXPECT_THAT(texts(help.languages()), ElementsAre("English", "한국어"));
  const auto changes = testing::countOf(help, &HelpViewModel::languageChanged);
  EXPECT_EQ(help.languageLabel(), "Language");
  EXPECT_EQ(help.copyTitle(), "Copy");
  EXPECT_EQ(help.copiedText(), "Copied");
  help.setLanguageIndex(1);
  EXPECT_EQ(help.languageIndex(), 1);
  EXPECT_EQ(help.languageLabel(), "언어");
  EXPECT_EQ(help.copyTitle(), "복사");
  EXPECT_EQ(help.copiedText(), "복사됨");
  EXPECT_EQ(*changes, 1);
  for (const int index : {1, 2, -1}) help.setLanguageIndex(index);
  EXPECT_EQ(help.languageIndex(), 1);
  EXPECT_EQ(*changes, 1);
}

TEST(HelpViewModel, ShowsEveryTextInItsOrder) {
  for (const auto language : {Language::english, Language::korean}) {
    for (const auto terminal : {GuidedTerminal::terminalApp, GuidedTerminal::tmux}) {
      HelpViewModel help(contextFor(terminal), Language::english);
      help.setLanguageIndex(static_cast<int>(language));
      const auto copy = helpCopy(language, terminal);
      const auto call = [&copy](const char* tool) { return copy.toolCallCopyHelp(tool); };
      EXPECT_THAT(wordsOf(help),
                  ElementsAreArray(std::vector<std::string>{std::string(copy.languageLabel),
                                                            std::string(copy.installationTitle),
                                                            std::string(copy.installationText),
                                                            std::string(copy.copyInstallPath),
                                                            std::string(copy.permissionsTitle),
                                                            std::string(copy.permissionsInstruction),
                                                            std::string(copy.permissionsRecovery),
                                                            std::string(copy.registrationTitle),
                                                            std::string(copy.registrationInstruction),
                                                            std::string(copy.copyMCPConfiguration),
                                                            std::string(copy.openClawJSONInstruction),
                                                            std::string(copy.copyOpenClawJSON),
                                                            std::string(copy.openClawCLIInstruction),
                                                            std::string(copy.copyOpenClawCLI),
                                                            std::string(copy.copyHelperPath),
                                                            std::string(copy.noNetworkText),
                                                            std::string(copy.statusTitle),
                                                            std::string(copy.statusInstruction),
                                                            call("terminal_status"),
                                                            std::string(copy.statusNote),
                                                            std::string(copy.createSessionTitle),
                                                            std::string(copy.createSessionInstruction),
                                                            call("terminal_create_session"),
                                                            std::string(copy.createSessionNote),
                                                            std::string(copy.sendCommandTitle),
                                                            std::string(copy.sendCommandInstruction),
                                                            call("terminal_send_command"),
                                                            std::string(copy.sendCommandNote),
                                                            std::string(copy.specialKeyTitle),
                                                            std::string(copy.specialKeyInstruction),
                                                            call("terminal_send_key"),
                                                            std::string(copy.specialKeyNote),
                                                            std::string(copy.readOutputTitle),
                                                            std::string(copy.readOutputInstruction),
                                                            call("terminal_read_output"),
                                                            std::string(copy.readOutputNote),
                                                            std::string(copy.focusSessionTitle),
                                                            std::string(copy.focusSessionInstruction),
                                                            call("terminal_focus_session"),
                                                            std::string(copy.focusSessionNote),
                                                            std::string(copy.existingSessionTitle),
                                                            std::string(copy.existingSessionNote)}));
    }
  }
}

TEST(HelpViewModel, OffersTheInstallPathAndTheConfigurationsOfTheHelper) {
  const HelpViewModel help(contextFor(), Language::english);
  const auto sections = help.sections();
  const auto path = codeOf(sections[0]);
  ASSERT_THAT(path, SizeIs(1));
  EXPECT_EQ(path[0].text, "/Applications/Velmora.app");

  const MCPConnectionConfiguration connection{"/somewhere/velmora"};
  const auto code = codeOf(sections[2]);
  ASSERT_THAT(code, SizeIs(4));
  EXPECT_EQ(code[0].text, connection.configuration());
  EXPECT_EQ(code[1].text, connection.openClawConfiguration());
  EXPECT_EQ(code[2].text, connection.openClawCommands());
  EXPECT_EQ(code[3].text, "/somewhere/velmora");
  EXPECT_THAT(code[0].text, ::testing::HasSubstr("/somewhere/velmora"));
}

TEST(HelpViewModel, ShowsAnExampleCallInEachToolSection) {
  const HelpViewModel help(contextFor(), Language::english);
  const auto sections = help.sections();
  ASSERT_THAT(sections, SizeIs(10));
  const std::vector<ToolName> tools{ToolName::status,  ToolName::createSession, ToolName::sendCommand,
                                    ToolName::sendKey, ToolName::readOutput,    ToolName::focusSession};
  for (std::size_t index = 0; index < tools.size(); ++index) {
    const auto code = codeOf(sections[static_cast<qsizetype>(index) + 3]);
    ASSERT_THAT(code, SizeIs(1));
    EXPECT_EQ(code[0].text, exampleToolCall(tools[index]));
    EXPECT_EQ(code[0].name, wireName(tools[index]));
  }
}

TEST(HelpViewModel, HasTheSameShapeAndCodeInBothLanguages) {
  HelpViewModel help(contextFor(), Language::english);
  const auto english = help.sections();
  help.setLanguageIndex(1);
  const auto korean = help.sections();
  ASSERT_EQ(english.size(), korean.size());
  for (qsizetype index = 0; index < english.size(); ++index) {
    const auto here = passagesOf(english[index]);
    const auto there = passagesOf(korean[index]);
    ASSERT_EQ(here.size(), there.size());
    for (std::size_t number = 0; number < here.size(); ++number) {
      EXPECT_EQ(here[number].isCode, there[number].isCode);
      EXPECT_EQ(here[number].isNote, there[number].isNote);
      EXPECT_EQ(here[number].name, there[number].name);
      EXPECT_EQ(here[number].text == there[number].text, here[number].isCode);
    }
  }
}

}  // namespace
}  // namespace velmora
