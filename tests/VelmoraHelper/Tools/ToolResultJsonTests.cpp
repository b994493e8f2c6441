#include <gtest/gtest.h>

#include <fstream>

#include "VelmoraHelper/Tools/CapturedPicture.h"
#include "VelmoraHelper/Tools/ToolResultJson.h"
#include "tests/VelmoraHelper/BridgeRecords.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using enum ProtocolRevision;

boost::json::object resultOf(const LocalControlResponse& response, ProtocolRevision revision = november2025,
                             std::size_t largestInlinePicture = 1000,
                             ToolName tool = ToolName::captureScreen) {
  JsonWriter writer(JsonFormat::people);
  writer.beginObject();
  writeToolResult(writer, tool, testing::bridgeAnswer(response), revision, largestInlinePicture);
  writer.endObject();
  return parseJson(writer.take()).as_object();
}

TEST(ToolResultJson, WritesDatesForPeople) {
  const auto result = resultOf({.ok = true, .data = JSONObject{{"capturedAt", 0}}});
  EXPECT_EQ(result.at("structuredContent").at("data").at("capturedAt"), "2001-01-01T00:00:00.000Z");
}

TEST(ToolResultJson, PassesOnWhatANewerApplicationSays) {
  const JSONObject session{{"color", "red"}, {"firstSeenAt", 0.5}, {"soldAt", 7}, {"seen", JSONArray{1.5}}};
  const auto result = resultOf({.ok = true, .data = JSONObject{{"session", session}, {"more", nullptr}}},
                               november2025, 0, ToolName::createSession);
  EXPECT_EQ(result.at("structuredContent").at("data"),
            parseJson(R"({"more":null,"session":{"color":"red","firstSeenAt":"2001-01-01T00:00:00.500Z",
                          "seen":[1.5],"soldAt":7}})"));
}

TEST(ToolResultJson, AFailureIsAnErrorThatSaysWhatToDo) {
  const StructuredError error{.code = ErrorCode::sessionBusy,
                              .message = "Busy.",
                              .operation = "terminal_send_command",
                              .retryable = true,
                              .recoverySuggestion = "Wait."};
  const auto result = resultOf({.ok = false, .error = error});
  EXPECT_EQ(result.at("isError"), true);
  EXPECT_EQ(result.at("structuredContent").at("error"),
            parseJson(R"({"code":"SESSION_BUSY","message":"Busy.","operation":"terminal_send_command",
                          "retryable":true,"recoverySuggestion":"Wait."})"));
  const std::string text(result.at("content").at(0).at("text").as_string());
  const auto lineEnd = text.find('\n');
  EXPECT_EQ(text.substr(0, lineEnd), "Busy. Wait. (SESSION_BUSY)");
  EXPECT_EQ(parseJson(text.substr(lineEnd + 1)), result.at("structuredContent"));
}

TEST(ToolResultJson, ShowsWarningsOfASuccess) {
  const auto result = resultOf({.ok = true, .warnings = {StructuredError{.message = "Cut."}}});
  EXPECT_EQ(result.at("isError"), false);
  EXPECT_EQ(result.at("structuredContent").at("warnings").at(0).at("message"), "Cut.");
}

TEST(ToolResultJson, HasNoStructuredContentBeforeItsRevision) {
  for (const auto revision : {november2024, march2025}) {
    const auto result = resultOf({.ok = true, .data = JSONObject{{"a", 1}}}, revision);
    EXPECT_FALSE(result.contains("structuredContent"));
    EXPECT_EQ(parseJson(std::string(result.at("content").at(0).at("text").as_string())).at("data").at("a"),
              1);
  }
}

class PictureResult : public ::testing::Test {
 protected:
  PictureResult() { std::ofstream(path, std::ios::binary) << png; }

  boost::json::array contentFor(ProtocolRevision revision, std::size_t largestInlinePicture) {
    return resultOf({.ok = true, .data = JSONObject{{"imagePath", path}}}, revision, largestInlinePicture)
        .at("content")
        .as_array();
  }

  const std::string png = "\x89PNG\r\n\x1A\nabc";
  TemporaryDirectory directory;
  const std::string path = (directory / "a b.png").string();
};

TEST_F(PictureResult, IsLinkedAndShownWhenItIsSmall) {
  const auto content = contentFor(june2025, png.size());
  ASSERT_EQ(content.size(), 3u);
  EXPECT_EQ(content[1], (boost::json::value{{"type", "resource_link"},
                                            {"uri", fileUri(path)},
                                            {"name", "a b.png"},
                                            {"mimeType", "image/png"},
                                            {"size", png.size()}}));
  EXPECT_EQ(content[2],
            (boost::json::value{{"type", "image"}, {"mimeType", "image/png"}, {"data", base64(png)}}));
}

TEST_F(PictureResult, IsOnlyLinkedWhenItIsLarge) {
  EXPECT_EQ(contentFor(july2026, png.size() - 1).size(), 2u);
}

TEST_F(PictureResult, IsOnlyShownToClientsThatKnowNoLinks) {
  const auto content = contentFor(march2025, png.size());
  ASSERT_EQ(content.size(), 2u);
  EXPECT_EQ(content[1].at("type"), "image");
}

TEST_F(PictureResult, IsLeftOutWhenTheFileCannotBeRead) {
  std::filesystem::remove(path);
  EXPECT_EQ(contentFor(november2025, 1000).size(), 1u);
}

}  // namespace
}  // namespace velmora
