#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/JsonRpc.h"

namespace velmora {
namespace {

// The id of a request with the given id text.
std::string idOf(const std::string& idText) {
  const auto request = parseJsonRpc(R"({"jsonrpc":"2.0","id": )" + idText + R"( ,"method":"ping"})");
  return request->id.value_or("none");
}

TEST(JsonRpc, KeepsTheIdExactlyAsItWasWritten) {
  for (const std::string id :
       {"0", "-0", "7", "9223372036854775807", "18446744073709551615", "123456789012345678901234567890",
        "1.50", "1e2", "-2.5E-3", "\"\"", "\"a\"", "\"\\u0041\\n\"", "\"\xED\x95\x9C\"", "\"}{][,:\\\"\""}) {
    EXPECT_EQ(idOf(id), id);
  }
}

TEST(JsonRpc, TakesTheTopLevelIdAmongOthers) {
  const auto request = parseJsonRpc(
      R"( { "params" : {"id":1,"a":[{"id":2},"}\"",[]],"b":{}} , "x":"id", "jsonrpc":"2.0","method":"m","id" : 3.0, "y":[] } )");
  EXPECT_EQ(request->id, "3.0");
  EXPECT_EQ(request->method, "m");
  EXPECT_EQ(request->params.size(), 3u);
}

TEST(JsonRpc, TakesTheLastOfTwoIds) {
  const auto request = parseJsonRpc(R"({"id":1,"jsonrpc":"2.0","method":"m","\u0069d":2})");
  EXPECT_EQ(request->id, "2");
}

TEST(JsonRpc, ARequestWithoutAnIdIsANotification) {
  const auto request = parseJsonRpc(R"({"jsonrpc":"2.0","method":"notifications/initialized"})");
  ASSERT_TRUE(request);
  EXPECT_EQ(request->id, std::nullopt);
}

TEST(JsonRpc, AbsentAndNullParamsAreEmpty) {
  EXPECT_TRUE(parseJsonRpc(R"({"jsonrpc":"2.0","id":1,"method":"m"})")->params.empty());
  EXPECT_TRUE(parseJsonRpc(R"({"jsonrpc":"2.0","id":1,"method":"m","params":null})")->params.empty());
}

TEST(JsonRpc, ResponsesAreNoRequests) {
  EXPECT_FALSE(parseJsonRpc(R"({"jsonrpc":"2.0","id":1,"result":{}})"));
  EXPECT_FALSE(parseJsonRpc(R"({"jsonrpc":"2.0","id":null,"error":{"code":1,"message":"m"}})"));
}

struct Malformed {
  const char* text;
  JsonRpcErrorCode code;
  const char* id;
};

TEST(JsonRpc, RefusesWhatIsNoRequestAndNamesTheIdWhenItIsKnown) {
  using enum JsonRpcErrorCode;
  const std::string deep = R"({"jsonrpc":"2.0","id":1,"method":"m","params":)" + std::string(200, '[') +
                           std::string(200, ']') + "}";
  const Malformed table[] = {
      {"x", parseError, "null"},
      {"{", parseError, "null"},
      {"{} {}", parseError, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"m\",}", parseError, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"\xFF\"}", parseError, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"\\ud800\"}", parseError, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":NaN,\"method\":\"m\"}", parseError, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":01,\"method\":\"m\"}", parseError, "null"},
      {"{'jsonrpc':'2.0'}", parseError, "null"},
      {"\xEF\xBB\xBF{}", parseError, "null"},
      {deep.c_str(), parseError, "null"},
      {"[]", invalidRequest, "null"},
      {R"([{"jsonrpc":"2.0","id":1,"method":"ping"}])", invalidRequest, "null"},
      {"1", invalidRequest, "null"},
      {"null", invalidRequest, "null"},
      {R"("ping")", invalidRequest, "null"},
      {"{}", invalidRequest, "null"},
      {R"({"jsonrpc":"2.0"})", invalidRequest, "null"},
      {R"({"jsonrpc":"2.0","id":1})", invalidRequest, "1"},
      {R"({"jsonrpc":"2.0","id":"a","method":1})", invalidRequest, "\"a\""},
      {R"({"id":1.5,"method":"ping"})", invalidRequest, "1.5"},
      {R"({"jsonrpc":2.0,"id":1,"method":"ping"})", invalidRequest, "1"},
      {R"({"jsonrpc":"1.0","id":1,"method":"ping"})", invalidRequest, "1"},
      {R"({"jsonrpc":"2.0","id":null,"method":"ping"})", invalidRequest, "null"},
      {R"({"jsonrpc":"2.0","id":true,"method":"ping"})", invalidRequest, "null"},
      {R"({"jsonrpc":"2.0","id":{},"method":"ping"})", invalidRequest, "null"},
      {R"({"jsonrpc":"2.0","id":[1],"method":"ping"})", invalidRequest, "null"},
      {R"({"jsonrpc":"2.0","id":1,"method":"ping","params":[]})", invalidParams, "1"},
      {R"({"jsonrpc":"2.0","id":1,"method":"ping","params":"a"})", invalidParams, "1"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.text);
    try {
      parseJsonRpc(row.text);
      ADD_FAILURE() << "accepted";
    } catch (const JsonRpcFailure& failure) {
      EXPECT_EQ(failure.code(), row.code);
      EXPECT_EQ(failure.id(), row.id);
      EXPECT_STRNE(failure.what(), "");
    }
  }
}

TEST(JsonRpc, RefusesEveryCutOffMessage) {
  const std::string whole = R"({"jsonrpc":"2.0","id":"a\"b","method":"m","params":{"x":[1.5,true,null]}})";
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_THROW(parseJsonRpc(whole.substr(0, length)), JsonRpcFailure) << length;
  }
  EXPECT_EQ(parseJsonRpc(whole)->id, "\"a\\\"b\"");
}

TEST(JsonRpc, AnswersAreOneLineOfJson) {
  EXPECT_EQ(jsonRpcResult("1.50", "{}"), R"({"jsonrpc":"2.0","id":1.50,"result":{}})");
  EXPECT_EQ(jsonRpcError("null", JsonRpcErrorCode::parseError, "a\n\"b\""),
            R"({"jsonrpc":"2.0","id":null,"error":{"code":-32700,"message":"a\n\"b\""}})");
}

}  // namespace
}  // namespace velmora
