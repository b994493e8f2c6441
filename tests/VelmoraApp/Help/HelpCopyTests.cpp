#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/describe/members.hpp>
#include <boost/mp11/algorithm.hpp>
#include <regex>
#include <set>

#include "BridgeModels/ToolInputs.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Help/HelpCopy.h"

namespace velmora {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

using NamedText = std::pair<std::string, std::string>;

// Every text with the name of its field, in their order.
std::vector<NamedText> textsOf(const HelpCopy& copy) {
  std::vector<NamedText> texts;
  using Members = boost::describe::describe_members<HelpCopy, boost::describe::mod_public>;
  boost::mp11::mp_for_each<Members>(
      [&](auto member) { texts.emplace_back(member.name, std::string(copy.*member.pointer)); });
  return texts;
}

std::vector<NamedText> textsOf(Language language, GuidedTerminal terminal) {
  return textsOf(helpCopy(language, terminal));
}

const std::vector<NamedText> englishForTerminalApp{
    {"languageLabel", "Language"},
    {"installationTitle", "Install Location"},
    {"installationText", "These instructions assume Velmora.app is installed in /Applications."},
    {"copyInstallPath", "Copy install path"},
    {"permissionsTitle", "1. Allow macOS Permissions"},
    {"permissionsInstruction",
     "Open Velmora. When macOS asks for Automation, Accessibility, or Screen Recording permission, "
     "allow it."},
    {"permissionsRecovery",
     "If you denied a prompt, open System Settings > Privacy & Security. Enable Terminal and System "
     "Events under Automation, Velmora under Accessibility, and Velmora under Screen Recording. Then "
     "refresh Dashboard."},
    {"registrationTitle", "2. Register the stdio Helper"},
    {"registrationInstruction", "Add this JSON to your MCP client's local stdio server configuration."},
    {"copyMCPConfiguration", "Copy MCP configuration"},
    {"openClawJSONInstruction", "For OpenClaw, add this shape to ~/.openclaw/openclaw.json."},
    {"copyOpenClawJSON", "Copy OpenClaw MCP configuration"},
    {"openClawCLIInstruction",
     "If OpenClaw CLI is available, these commands save the same server definition and probe the "
     "connection."},
    {"copyOpenClawCLI", "Copy OpenClaw CLI commands"},
    {"copyHelperPath", "Copy helper path"},
    {"noNetworkText",
     "No URL, port, or token is required. Reconnect your MCP client after updating the configuration."},
    {"statusTitle", "3. Check Connection Status"},
    {"statusInstruction", "First check the bridge and Terminal.app status."},
    {"statusNote", "In Dashboard, confirm MCP is Active and Terminal automation is granted."},
    {"createSessionTitle", "4. Create a Managed Terminal Window"},
    {"createSessionInstruction", "Create a new managed window where commands can be delivered safely."},
    {"createSessionNote",
     "Use data.session.sessionId from the response in later calls. The official Terminal AppleScript "
     "dictionary does not provide safe tab creation, so only window is supported."},
    {"sendCommandTitle", "5. Send a Command"},
    {"sendCommandInstruction",
     "Send the sessionId from the create response and the exact command string to run."},
    {"sendCommandNote",
     "delivered_to_terminal means the command was delivered to Terminal. It does not guarantee "
     "completion, success, or an exit code. Busy sessions are rejected."},
    {"specialKeyTitle", "6. Send Special Keys"},
    {"specialKeyInstruction", "Send special keys such as up or down arrow by key name."},
    {"specialKeyNote",
     "Supported keys are upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, "
     "forwardDelete, home, end, pageUp, and pageDown. Special key input brings the target Terminal "
     "tab forward and requires macOS Accessibility plus System Events Automation permission."},
    {"readOutputTitle", "7. Read Output"},
    {"readOutputInstruction",
     "Read a bounded suffix of the visible screen or scrollback for the same sessionId."},
    {"readOutputNote",
     "source can be visible or history, and maxCharacters can be 1 to 50,000. For TUI screens, "
     "request a PNG with terminal_capture_screen."},
    {"focusSessionTitle", "8. Show a Session in Terminal"},
    {"focusSessionInstruction",
     "Call the focus tool only when you explicitly want to show a selected session."},
    {"focusSessionNote",
     "Status checks, command delivery, and output reads do not automatically bring Terminal to the "
     "front."},
    {"existingSessionTitle", "Existing Sessions"},
    {"existingSessionNote",
     "Use terminal_list_sessions to inspect sessions. With the default policy, existing sessions are "
     "registered as managed; with Selective policy, they are registered as readOnly. Closed or "
     "changed sessionIds are not replaced with other tabs."},
    {"copyCallExample", "Copy %1 call example"},
    {"copy", "Copy"},
    {"copied", "Copied"},
};

// What tmux has no use for, or does otherwise.
const std::vector<std::string> differWithTmux{
    "installationText",   "permissionsTitle", "permissionsInstruction", "permissionsRecovery",
    "statusInstruction",  "statusNote",       "createSessionTitle",     "createSessionNote",
    "sendCommandNote",    "specialKeyNote",   "focusSessionTitle",      "focusSessionNote",
    "existingSessionNote"};

// What must stand in every language as it is: names of tools, fields, values, files and programs. Words that
// are values in a note are plain words elsewhere.
std::multiset<std::string> namesIn(const NamedText& text) {
  const std::string names =
      R"(terminal_\w+|delivered_to_terminal|data\.session\.sessionId|sessionId|[a-z]+[A-Z]\w+|tmux|stdio|)"
      R"(Dashboard|Selective|Active|System Events|Velmora|OpenClaw|~/\.openclaw/openclaw\.json|)"
      R"(/Applications|AppleScript|macOS|JSON|MCP|CLI|PNG|TUI|URL|50,000|3\.2)";
  const std::string values = R"(|\b(?:kind|source|visible|history|window|managed|granted)\b)";
  const std::regex name(text.first.ends_with("Note") ? names + values : names);
  std::multiset<std::string> found;
  for (std::sregex_iterator match(text.second.begin(), text.second.end(), name), end; match != end; ++match) {
    found.insert(match->str());
  }
  return found;
}

class HelpCopyTest : public ::testing::TestWithParam<std::tuple<Language, GuidedTerminal>> {
 protected:
  std::vector<NamedText> texts = textsOf(std::get<0>(GetParam()), std::get<1>(GetParam()));
};

INSTANTIATE_TEST_SUITE_P(Everywhere, HelpCopyTest,
                         ::testing::Combine(::testing::Values(Language::english, Language::korean),
                                            ::testing::Values(GuidedTerminal::terminalApp,
                                                              GuidedTerminal::tmux)));

TEST_P(HelpCopyTest, IsComplete) {
  ASSERT_THAT(texts, SizeIs(39));
  for (const auto& [name, text] : texts) {
    EXPECT_THAT(text, Not(IsEmpty())) << name;
    EXPECT_EQ(velmora::text(text).trimmed(), velmora::text(text)) << name;
    EXPECT_EQ(text.find("  "), std::string::npos) << name;
  }
}

TEST_P(HelpCopyTest, SpeaksInWholeSentencesWhereItInstructs) {
  for (const auto& [name, text] : texts) {
    const bool isSentence = name.ends_with("Text") || name.ends_with("Instruction") ||
                            name.ends_with("Note") || name == "permissionsRecovery";
    EXPECT_EQ(text.ends_with('.'), isSentence) << name;
  }
}

TEST_P(HelpCopyTest, NamesEveryKey) {
  const auto note = std::find_if(texts.begin(), texts.end(),
                                 [](const NamedText& text) { return text.first == "specialKeyNote"; });
  for (const auto& key : enumCases<TerminalKey>)
    EXPECT_THAT(note->second, HasSubstr(std::string(key.wireName)));
}

TEST(HelpCopy, ForTerminalAppInEnglishIsWordForWord) {
  EXPECT_THAT(textsOf(Language::english, GuidedTerminal::terminalApp),
              ElementsAreArray(englishForTerminalApp));
}

TEST(HelpCopy, InKoreanHasTheSettledWords) {
  const auto copy = helpCopy(Language::korean, GuidedTerminal::terminalApp);
  EXPECT_EQ(copy.copyInstallPath, "설치 경로 복사");
  EXPECT_EQ(copy.permissionsTitle, "1. macOS 권한 허용");
  EXPECT_EQ(copy.copyMCPConfiguration, "MCP 설정 복사");
  EXPECT_EQ(copy.noNetworkText,
            "URL, 포트, 토큰은 필요하지 않습니다. 설정 후 MCP 클라이언트를 다시 연결합니다.");
}

TEST(HelpCopy, InKoreanSaysTheSameInTheSameOrder) {
  for (const auto terminal : {GuidedTerminal::terminalApp, GuidedTerminal::tmux}) {
    const auto english = textsOf(Language::english, terminal);
    const auto korean = textsOf(Language::korean, terminal);
    ASSERT_EQ(english.size(), korean.size());
    for (std::size_t index = 0; index < english.size(); ++index) {
      const auto& [name, text] = korean[index];
      EXPECT_EQ(name, english[index].first);
      EXPECT_NE(text, english[index].second) << name;
      EXPECT_EQ(namesIn(korean[index]), namesIn(english[index])) << name;
    }
  }
}

TEST(HelpCopy, InKoreanKeepsTheFormalStyle) {
  for (const auto terminal : {GuidedTerminal::terminalApp, GuidedTerminal::tmux}) {
    for (const auto& [name, text] : textsOf(Language::korean, terminal)) {
      for (const auto& sentence : velmora::text(text).split(". ")) {
        const bool isTitle = name.ends_with("Title") || name.starts_with("cop") || name == "languageLabel";
        EXPECT_EQ(QString(sentence).remove('.').endsWith("니다"), !isTitle) << name << ": " << text;
        if (isTitle) break;
      }
    }
  }
}

TEST(HelpCopy, WithTmuxDiffersWhereItMustInBothLanguages) {
  for (const auto language : {Language::english, Language::korean}) {
    const auto terminalApp = textsOf(language, GuidedTerminal::terminalApp);
    const auto tmux = textsOf(language, GuidedTerminal::tmux);
    std::vector<std::string> different;
    for (std::size_t index = 0; index < tmux.size(); ++index) {
      if (tmux[index] != terminalApp[index]) different.push_back(tmux[index].first);
    }
    EXPECT_THAT(different, ElementsAreArray(differWithTmux));
  }
}

TEST(HelpCopy, WithTmuxNeverSpeaksOfMacOS) {
  const std::vector<std::string> macWords{"macOS",         "Apple",        "System Settings", "시스템 설정",
                                          "System Events", "Applications", "Terminal",        "Accessib",
                                          "Screen Recor",  "손쉬운 사용",  "접근성",          "화면 기록",
                                          "개인정보"};
  for (const auto language : {Language::english, Language::korean}) {
    for (const auto& [name, text] : textsOf(language, GuidedTerminal::tmux)) {
      for (const auto& word : macWords) EXPECT_THAT(text, Not(HasSubstr(word))) << name;
    }
  }
}

TEST(HelpCopy, NamesTheToolWhoseCallIsCopied) {
  for (const auto terminal : {GuidedTerminal::terminalApp, GuidedTerminal::tmux}) {
    EXPECT_EQ(helpCopy(Language::english, terminal).toolCallCopyHelp("terminal_status"),
              "Copy terminal_status call example");
    EXPECT_EQ(helpCopy(Language::korean, terminal).toolCallCopyHelp("terminal_status"),
              "terminal_status 호출 예시 복사");
  }
}

TEST(HelpCopy, HasTheWordsOnTheButtons) {
  EXPECT_EQ(helpCopy(Language::english, GuidedTerminal::tmux).copy, "Copy");
  EXPECT_EQ(helpCopy(Language::english, GuidedTerminal::tmux).copied, "Copied");
  EXPECT_EQ(helpCopy(Language::korean, GuidedTerminal::tmux).copy, "복사");
  EXPECT_EQ(helpCopy(Language::korean, GuidedTerminal::tmux).copied, "복사됨");
}

}  // namespace
}  // namespace velmora
