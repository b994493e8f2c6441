#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Tools/ToolCatalogue.h"

namespace velmora {
namespace {

constexpr std::size_t clientTextLimit = 2048;

boost::json::array listedTools(ProtocolRevision revision = ProtocolRevision::july2026,
                               ToolForm form = ToolForm::plain) {
  JsonWriter writer(JsonFormat::wire);
  writer.beginObject();
  writeToolList(writer, revision, form);
  writer.endObject();
  return parseJson(writer.take()).at("tools").as_array();
}

TEST(ToolCatalogue, ListsTheNineToolsInTheirOrder) {
  std::vector<std::string> names;
  for (const auto& tool : listedTools()) names.emplace_back(tool.at("name").as_string());
  EXPECT_THAT(names, ::testing::ElementsAre(
                         "terminal_status", "terminal_list_sessions", "terminal_get_active_session",
                         "terminal_create_session", "terminal_send_command", "terminal_send_key",
                         "terminal_read_output", "terminal_capture_screen", "terminal_focus_session"));
}

TEST(ToolCatalogue, GivesEveryToolATitleAShortDescriptionASchemaAndFourHints) {
  for (const auto& tool : listedTools()) {
    SCOPED_TRACE(std::string(tool.at("name").as_string()));
    EXPECT_FALSE(tool.at("title").as_string().empty());
    EXPECT_FALSE(tool.at("description").as_string().empty());
    EXPECT_LT(tool.at("description").as_string().size(), clientTextLimit);
    EXPECT_EQ(tool.at("inputSchema").at("type"), "object");
    EXPECT_EQ(tool.at("inputSchema").at("additionalProperties"), false);
    const auto& annotations = tool.at("annotations").as_object();
    EXPECT_EQ(annotations.size(), 5u);
    EXPECT_EQ(annotations.at("title"), tool.at("title"));
    for (const auto* hint : {"readOnlyHint", "destructiveHint", "idempotentHint", "openWorldHint"}) {
      EXPECT_TRUE(annotations.at(hint).is_bool());
    }
    EXPECT_FALSE(annotations.at("readOnlyHint").as_bool() && annotations.at("destructiveHint").as_bool());
  }
}

TEST(ToolCatalogue, MarksExactlyTheReadingToolsAsReadOnly) {
  std::vector<std::string> readOnly;
  for (const auto& tool : listedTools()) {
    if (tool.at("annotations").at("readOnlyHint").as_bool())
      readOnly.emplace_back(tool.at("name").as_string());
  }
  EXPECT_THAT(readOnly, ::testing::ElementsAre("terminal_status", "terminal_list_sessions",
                                               "terminal_get_active_session", "terminal_read_output",
                                               "terminal_capture_screen"));
}

TEST(ToolCatalogue, DescribesEveryFieldOfEverySchema) {
  for (const auto& tool : listedTools()) {
    const auto* properties = tool.at("inputSchema").as_object().if_contains("properties");
    if (properties == nullptr) continue;
    EXPECT_FALSE(properties->as_object().empty()) << tool;
    for (const auto& property : properties->as_object()) {
      EXPECT_FALSE(property.value().at("description").as_string().empty()) << property.key();
    }
  }
}

TEST(ToolCatalogue, AsksClientsToKeepALongReadWhole) {
  for (const auto& tool : listedTools()) {
    const auto* meta = tool.as_object().if_contains("_meta");
    ASSERT_EQ(meta != nullptr, tool.at("name") == "terminal_read_output") << tool;
    if (meta != nullptr) {
      EXPECT_EQ(meta->at("anthropic/maxResultSizeChars"), 200000);
    }
  }
}

TEST(ToolCatalogue, TellsClientsOfEachRevisionWhatTheyKnow) {
  using enum ProtocolRevision;
  for (const auto& entry : enumCases<ProtocolRevision>) {
    for (const auto& tool : listedTools(entry.value)) {
      SCOPED_TRACE(entry.wireName);
      const auto& members = tool.as_object();
      EXPECT_EQ(members.contains("annotations"), entry.value >= march2025);
      EXPECT_EQ(members.contains("title"), entry.value >= june2025);
      EXPECT_EQ(members.contains("outputSchema"), entry.value >= june2025);
      EXPECT_TRUE(members.contains("inputSchema"));
    }
  }
}

TEST(ToolCatalogue, InstructionsFitWhatClientsKeep) {
  for (const auto form : {ToolForm::plain, ToolForm::extended}) {
    EXPECT_FALSE(toolInstructions(form).empty());
    EXPECT_LT(toolInstructions(form).size(), clientTextLimit);
  }
}

TEST(ToolCatalogue, TheExtendedFormIsToldToWaitAndNotToLookAgainAndAgain) {
  std::string plain = toolInstructions(), extended = toolInstructions(ToolForm::extended);
  for (const auto& tool : listedTools()) plain += tool.at("description").as_string();
  for (const auto& tool : listedTools(ProtocolRevision::july2026, ToolForm::extended)) {
    const auto& description = tool.at("description").as_string();
    EXPECT_LT(description.size(), clientTextLimit) << tool.at("name");
    extended += description;
  }
  for (const auto* advice :
       {"only delivers text", "Use it after each command.", "then read the result with terminal_read_output",
        "does, in far fewer characters"}) {
    EXPECT_NE(plain.find(advice), std::string::npos) << advice;
    EXPECT_EQ(extended.find(advice), std::string::npos) << advice;
  }
  EXPECT_EQ(plain.find("waitSeconds"), std::string::npos);
  EXPECT_NE(extended.find("Give terminal_send_command waitSeconds"), std::string::npos);
}

}  // namespace
}  // namespace velmora
