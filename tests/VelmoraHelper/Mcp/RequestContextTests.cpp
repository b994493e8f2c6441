#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Mcp/RequestContext.h"
#include "VelmoraHelper/Protocol/JsonRpc.h"

namespace velmora {
namespace {

#define VERSION R"("io.modelcontextprotocol/protocolVersion")"
#define CAPABILITIES R"("io.modelcontextprotocol/clientCapabilities")"
#define CLIENT R"("io.modelcontextprotocol/clientInfo")"

boost::json::object paramsWith(const std::string& meta) {
  return parseJson(R"({"_meta":)" + meta + "}").as_object();
}

int refusalOf(const std::string& meta) {
  try {
    statedContext(paramsWith(meta));
    return 0;
  } catch (const JsonRpcFailure& failure) {
    return static_cast<int>(failure.code());
  }
}

TEST(RequestContext, IsStatedByTheVersionAndTheCapabilities) {
  const auto context = statedContext(paramsWith("{" VERSION R"(:"2026-07-28",)" CAPABILITIES
                                                R"(:{"x":1},)" CLIENT R"(:{"name":"n","version":"v"}})"));
  EXPECT_EQ(context, (RequestContext{.revision = ProtocolRevision::july2026,
                                     .client = {.name = "n", .version = "v"}}));
}

TEST(RequestContext, TheClientNeedNotSayWhoItIs) {
  for (const std::string client : {"", "," CLIENT ":{}", "," CLIENT ":[]", "," CLIENT R"(:{"name":1})"}) {
    const auto context =
        statedContext(paramsWith("{" VERSION R"(:"2026-07-28",)" CAPABILITIES ":{}" + client + "}"));
    ASSERT_TRUE(context) << client;
    EXPECT_EQ(context->client, ClientName{}) << client;
  }
}

TEST(RequestContext, IsNotStatedBeforeTheStatelessRevision) {
  for (const std::string meta :
       {"{}", "null", "[]", "1", R"({"progressToken":1})", "{" CLIENT R"(:{"name":"n"}})"}) {
    EXPECT_EQ(statedContext(paramsWith(meta)), std::nullopt) << meta;
  }
  EXPECT_EQ(statedContext({}), std::nullopt);
}

TEST(RequestContext, IsRefusedWhenItIsIncomplete) {
  EXPECT_EQ(refusalOf("{" VERSION R"(:"2026-07-28"})"), -32602);
  EXPECT_EQ(refusalOf("{" VERSION R"(:"2026-07-28",)" CAPABILITIES ":null}"), -32602);
  EXPECT_EQ(refusalOf("{" VERSION R"(:"2026-07-28",)" CAPABILITIES ":[]}"), -32602);
  EXPECT_EQ(refusalOf("{" CAPABILITIES ":{}}"), -32602);
  EXPECT_EQ(refusalOf("{" VERSION ":20260728," CAPABILITIES ":{}}"), -32602);
}

TEST(RequestContext, IsRefusedWithItsOwnCodeForAnotherRevision) {
  for (const std::string version : {"1900-01-01", "2025-11-25", "2027-01-01", ""}) {
    EXPECT_EQ(refusalOf("{" VERSION ":\"" + version + "\"," CAPABILITIES ":{}}"), -32022) << version;
    EXPECT_EQ(refusalOf("{" VERSION ":\"" + version + "\"}"), -32022) << version;
  }
}

TEST(RequestContext, TakesAProgressTokenThatIsAStringOrANumber) {
  EXPECT_EQ(progressTokenOf(paramsWith(R"({"progressToken":"a\"b"})")), R"("a\"b")");
  EXPECT_EQ(progressTokenOf(paramsWith(R"({"progressToken":12})")), "12");
  for (const std::string meta : {"{}", R"({"progressToken":null})", R"({"progressToken":{}})", "[]"}) {
    EXPECT_EQ(progressTokenOf(paramsWith(meta)), std::nullopt) << meta;
  }
}

}  // namespace
}  // namespace velmora
