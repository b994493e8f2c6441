#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Tools.h"
#include "VelmoraHelper/Tools/ArgumentCheck.h"

namespace velmora {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

#define ID R"("sessionId":"0F8FAD5B-D9CB-469F-A165-70867728950E")"

std::string faultOf(ToolName tool, const std::string& arguments) {
  return argumentFault(tool, parseJson(arguments).as_object()).value_or("none");
}

std::string keyFault(const std::string& key) {
  return faultOf(ToolName::sendKey, "{" ID R"(,"key":")" + key + "\"}");
}

TEST(ArgumentCheck, NamesTheKeyThatWasGivenAndTheTextThatWasMeant) {
  EXPECT_EQ(
      keyFault("ctrl-c"),
      "key: \"ctrl-c\" is none of upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, "
      "forwardDelete, home, end, pageUp, pageDown; for Ctrl-C send the text \"\\u0003\" with "
      "terminal_send_command.");
  for (const auto* key : {"Ctrl+D", "control-d", "C-d", "^D", "CTRL D"})
    EXPECT_THAT(keyFault(key),
                EndsWith("; for Ctrl-D send the text \"\\u0004\" with terminal_send_command."));
  EXPECT_THAT(keyFault("ctrl-z"), HasSubstr("\"\\u001a\""));
}

TEST(ArgumentCheck, NamesTheKeyThatWasMeant) {
  const std::vector<std::pair<std::string, std::string>> guesses{
      {"Enter", "return"},     {"RETURN", "return"}, {"Esc", "escape"},
      {"Backspace", "delete"}, {"Up", "upArrow"},    {"down_arrow", "downArrow"},
      {"page-up", "pageUp"},   {"PgDn", "pageDown"}, {"Del", "forwardDelete"},
      {"tabb", "tab"}};
  for (const auto& [guess, meant] : guesses)
    EXPECT_THAT(keyFault(guess), EndsWith("; did you mean " + meant + "?")) << guess;
  for (const auto* text : {"y", " ", "Space"})
    EXPECT_THAT(keyFault(text), EndsWith("; for text use terminal_send_command.")) << text;
  EXPECT_THAT(keyFault("f5"), EndsWith("pageUp, pageDown."));
}

TEST(ArgumentCheck, SaysWhatIsMissingAndWhichNameWasGivenInstead) {
  EXPECT_EQ(faultOf(ToolName::sendCommand, R"({"session_id":"x","command":"ls"})"),
            "sessionId is missing. You gave \"session_id\", which this tool does not have.");
  EXPECT_EQ(faultOf(ToolName::captureScreen, "{}"),
            "sessionId is missing. It is: The session's id, from terminal_list_sessions, "
            "terminal_get_active_session or terminal_create_session.");
  EXPECT_THAT(faultOf(ToolName::sendCommand, "{" ID R"(,"command":null})"),
              StartsWith("command is missing."));
}

TEST(ArgumentCheck, SaysWhatAValueShouldHaveBeen) {
  EXPECT_THAT(faultOf(ToolName::readOutput, R"({"sessionId":"1"})"),
              StartsWith("sessionId: \"1\" is not a UUID. It is: The session's id, from"));
  EXPECT_EQ(faultOf(ToolName::sendKey, "{" ID R"(,"key":"tab","repeatCount":"2"})"),
            "repeatCount: \"2\" is not an integer. Leave out the quotes.");
  EXPECT_EQ(faultOf(ToolName::sendKey, "{" ID R"(,"key":"tab","repeatCount":1.5})"),
            "repeatCount: 1.5E0 is not an integer. It is: How many times to press the key.");
  EXPECT_EQ(faultOf(ToolName::listSessions, R"({"includeBusy":"no"})"),
            "includeBusy: \"no\" is not true or false. Leave out the quotes.");
  EXPECT_EQ(faultOf(ToolName::readOutput, "{" ID R"(,"source":"Screen"})"),
            "source: \"Screen\" is none of visible, history.");
  EXPECT_EQ(faultOf(ToolName::createSession, R"({"kind":"windows"})"),
            "kind: \"windows\" is none of window, tab; did you mean window?");
  EXPECT_THAT(faultOf(ToolName::sendCommand, "{" ID R"(,"command":["ls"]})"),
              StartsWith("command: [\"ls\"] is not a string."));
}

TEST(ArgumentCheck, KnowsTheExtendedFormOnlyWhereItIsOffered) {
  const auto fault = [](const std::string& arguments, ToolForm form) {
    return argumentFault(ToolName::sendKey, parseJson(arguments).as_object(), form).value_or("none");
  };
  const std::string enter = "{" ID R"(,"key":"enter"})";
  const std::string control = "{" ID R"(,"key":"ctrl-c"})";
  EXPECT_THAT(fault(enter, ToolForm::plain), EndsWith("; did you mean return?"));
  EXPECT_EQ(fault(enter, ToolForm::extended), "none");
  EXPECT_THAT(fault(control, ToolForm::extended), EndsWith("; did you mean controlC?"));

  const auto typing = parseJson("{" ID R"(,"command":"y","submit":"no"})").as_object();
  EXPECT_EQ(argumentFault(ToolName::sendCommand, typing), std::nullopt);
  EXPECT_EQ(argumentFault(ToolName::sendCommand, typing, ToolForm::extended),
            "submit: \"no\" is not true or false. Leave out the quotes.");
}

TEST(ArgumentCheck, SaysWhatOnlyTheExtendedFormKnows) {
  const auto uses = [](ToolName tool, const std::string& arguments) {
    return usesExtendedForm(tool, parseJson(arguments).as_object());
  };
  EXPECT_FALSE(uses(ToolName::sendCommand, "{" ID R"(,"command":"y","submit":null,"x":1})"));
  EXPECT_TRUE(uses(ToolName::sendCommand, "{" ID R"(,"command":"y","submit":true})"));
  EXPECT_FALSE(uses(ToolName::sendKey, "{" ID R"(,"key":"return"})"));
  EXPECT_TRUE(uses(ToolName::sendKey, "{" ID R"(,"key":"f1"})"));
}

TEST(ArgumentCheck, ShowsALongValueShortened) {
  const auto fault = faultOf(ToolName::sendKey, "{" ID R"(,"key":")" + std::string(5000, 'x') + "\"}");
  EXPECT_LT(fault.size(), 400u);
  EXPECT_THAT(fault, HasSubstr("xxx... is none of"));
}

// Whatever it lets pass the application decodes, and nothing else.
TEST(ArgumentCheck, FaultsExactlyWhatTheApplicationCannotDecode) {
  for (const auto& entry : enumCases<ToolName>) {
    for (const auto* arguments :
         {"{}", "{" ID "}", R"({"sessionId":"0f8fad5b-d9cb-469f-a165-70867728950e","x":1})",
          "{" ID R"(,"command":""})", "{" ID R"(,"command":7})", "{" ID R"(,"key":"tab","repeatCount":51})",
          "{" ID R"(,"key":"tab","repeatCount":2.0})", "{" ID R"(,"key":"return_"})",
          "{" ID R"(,"maxCharacters":0})", "{" ID R"(,"maxCharacters":1e300})", R"({"kind":null})",
          R"({"kind":"tab","inSessionId":"x"})", R"({"includeBusy":1})"}) {
      const auto document = parseJson(arguments);
      const bool decodes = visitTool(entry.value, [&]<class Tool>(const Tool&) {
        try {
          typename Tool::Input input{};
          JsonReader(document).read(input);
          return true;
        } catch (const JsonDecodeError&) {
          return false;
        }
      });
      EXPECT_EQ(argumentFault(entry.value, document.as_object()).has_value(), !decodes)
          << entry.wireName << " " << arguments;
    }
  }
}

}  // namespace
}  // namespace velmora
