#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Mcp/ServerAnswers.h"
#include "VelmoraHelper/Mcp/ServerIcon.h"
#include "VelmoraHelper/Tools/CapturedPicture.h"

namespace velmora {
namespace {

constexpr const char* info = "serverInfo";

boost::json::object initialized(ProtocolRevision revision, ToolForm form) {
  return parseJson(ServerAnswers("1", form).initialize(revision)).at(info).as_object();
}

boost::json::object discovered(ToolForm form) {
  return parseJson(ServerAnswers("1", form).discover())
      .at("_meta")
      .at("io.modelcontextprotocol/serverInfo")
      .as_object();
}

TEST(ServerAnswers, NameTheServerAndNoMoreInThePlainForm) {
  for (const auto& revision : enumCases<ProtocolRevision>) {
    const auto server = isStateless(revision.value) ? discovered(ToolForm::plain)
                                                    : initialized(revision.value, ToolForm::plain);
    boost::json::object expected{{"name", "velmora"}, {"version", "1"}};
    if (revision.value >= ProtocolRevision::june2025) expected["title"] = "Velmora";
    EXPECT_EQ(server, expected) << revision.wireName;
  }
}

TEST(ServerAnswers, DescribeTheServerInTheExtendedForm) {
  for (const auto& server :
       {initialized(ProtocolRevision::november2025, ToolForm::extended), discovered(ToolForm::extended)}) {
    EXPECT_FALSE(server.at("description").as_string().empty());
    EXPECT_EQ(server.at("websiteUrl"), "https://velmora.app");
  }
}

TEST(ServerAnswers, CarryTheIconInsteadOfNamingAPlaceOfIt) {
  const auto server = discovered(ToolForm::extended);
  ASSERT_EQ(server.at("icons").as_array().size(), 1u);
  const auto& icon = server.at("icons").at(0).as_object();
  EXPECT_EQ(icon.at("src").as_string(), "data:image/png;base64," + base64(serverIcon));
  EXPECT_LT(icon.at("src").as_string().size(), 4096u);
  EXPECT_EQ(icon.at("mimeType"), "image/png");
  EXPECT_EQ(icon.at("sizes"), boost::json::array{"64x64"});
}

TEST(ServerAnswers, DescribeNothingToClientsOfRevisionsThatHaveNoPlaceForIt) {
  for (const auto& revision : enumCases<ProtocolRevision>) {
    if (revision.value >= ProtocolRevision::november2025) continue;
    EXPECT_EQ(initialized(revision.value, ToolForm::extended), initialized(revision.value, ToolForm::plain))
        << revision.wireName;
  }
}

// It would cost every answer of a conversation.
TEST(ServerAnswers, DescribeTheServerOnlyWhereAConversationBegins) {
  ServerAnswers answers("1", ToolForm::extended);
  const auto list = parseJson(answers.toolList(ProtocolRevision::july2026));
  const auto& server = list.at("_meta").at("io.modelcontextprotocol/serverInfo").as_object();
  EXPECT_FALSE(server.contains("description"));
  EXPECT_FALSE(server.contains("icons"));
}

}  // namespace
}  // namespace velmora
