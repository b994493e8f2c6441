#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Protocol/JsonRpc.h"

namespace velmora {
namespace {

std::optional<JsonRpcRequest> requestOf(std::string_view text) { return requestIn(parseJsonRpc(text)); }

// The id of a request with the given id text.
std::string idOf(const std::string& idText) {
  const auto request = requestOf(R"({"jsonrpc":"2.0","id": )" + idText + R"( ,"method":"ping"})");
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
  const auto request = requestOf(
      R"( { "params" : {"id":1,"a":[{"id":2},"}\"",[]],"b":{}} , "x":"id", "jsonrpc":"2.0","method":"m","id" : 3.0, "y":[] } )");
  EXPECT_EQ(request->id, "3.0");
  EXPECT_EQ(request->method, "m");
  EXPECT_EQ(request->params.size(), 3u);
}

TEST(JsonRpc, TakesTheLastOfTwoIds) {
  const auto request = requestOf(R"({"id":1,"jsonrpc":"2.0","method":"m","\u0069d":2})");
  EXPECT_EQ(request->id, "2");
}

TEST(JsonRpc, ARequestWithoutAnIdIsANotification) {
  const auto request = requestOf(R"({"jsonrpc":"2.0","method":"notifications/initialized"})");
  ASSERT_TRUE(request);
  EXPECT_EQ(request->id, std::nullopt);
}

TEST(JsonRpc, AbsentAndNullParamsAreEmpty) {
  EXPECT_TRUE(requestOf(R"({"jsonrpc":"2.0","id":1,"method":"m"})")->params.empty());
  EXPECT_TRUE(requestOf(R"({"jsonrpc":"2.0","id":1,"method":"m","params":null})")->params.empty());
}

TEST(JsonRpc, ANotificationIsNoRequestWhateverItsParamsAre) {
  const auto notification = requestOf(R"({"jsonrpc":"2.0","method":"m","params":7})");
  ASSERT_TRUE(notification);
  EXPECT_EQ(notification->id, std::nullopt);
  EXPECT_TRUE(notification->params.empty());
}

TEST(JsonRpc, QuotesWhatTheClientSentWhole) {
  const JsonRpcFailure failure(JsonRpcErrorCode::invalidParams, std::string("a\0b", 3));
  EXPECT_NE(jsonRpcError("1", failure).find(R"("a\u0000b")"), std::string::npos);
}

TEST(JsonRpc, ResponsesAreNoRequests) {
  EXPECT_FALSE(requestOf(R"({"jsonrpc":"2.0","id":1,"result":{}})"));
  EXPECT_FALSE(requestOf(R"({"jsonrpc":"2.0","id":null,"error":{"code":1,"message":"m"}})"));
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
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"m\",}", parseError, "1"},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"\xFF\"}", parseError, "1"},
      {"{\"jsonrpc\":\"2.0\",\"id\":\"a\",\"method\":\"\\ud800\"}", parseError, "\"a\""},
      {"{\"jsonrpc\":\"2.0\",\"id\":\"\\ud800\",\"method\":\"m\"}", parseError, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":[1],\"method\":\"\\ud800\"}", parseError, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":NaN,\"method\":\"m\"}", parseError, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":01,\"method\":\"m\"}", parseError, "null"},
      {"{'jsonrpc':'2.0'}", parseError, "null"},
      {"\xEF\xBB\xBF{}", parseError, "null"},
      {deep.c_str(), parseError, "1"},
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
      requestOf(row.text);
      ADD_FAILURE() << "accepted";
    } catch (const JsonRpcFailure& failure) {
      EXPECT_EQ(failure.code(), row.code);
      EXPECT_EQ(failure.id().value_or("null"), row.id);
      EXPECT_STRNE(failure.what(), "");
    }
  }
}

TEST(JsonRpc, RefusesEveryCutOffMessage) {
  const std::string whole = R"({"jsonrpc":"2.0","id":"a\"b","method":"m","params":{"x":[1.5,true,null]}})";
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_THROW(requestOf(whole.substr(0, length)), JsonRpcFailure) << length;
  }
  EXPECT_EQ(requestOf(whole)->id, "\"a\\\"b\"");
}

TEST(JsonRpc, AnswersAreOneLineOfJson) {
  EXPECT_EQ(jsonRpcResult("1.50", "{}"), R"({"jsonrpc":"2.0","id":1.50,"result":{}})");
  const JsonRpcFailure failure(JsonRpcErrorCode::parseError, "a\n\"b\"");
  EXPECT_EQ(jsonRpcError("null", failure),
            R"({"jsonrpc":"2.0","id":null,"error":{"code":-32700,"message":"a\n\"b\""}})");
  EXPECT_EQ(jsonRpcError(std::nullopt, JsonRpcFailure(failure).withData("[1]")),
            R"({"jsonrpc":"2.0","error":{"code":-32700,"message":"a\n\"b\"","data":[1]}})");
  EXPECT_EQ(jsonRpcNotification("n", "{}"), R"({"jsonrpc":"2.0","method":"n","params":{}})");
}

TEST(JsonRpc, NamesTheServedRevisionsWhenAnotherIsAskedFor) {
  const auto failure = unsupportedProtocolVersion("1900-01-01");
  EXPECT_EQ(static_cast<int>(failure.code()), -32022);
  EXPECT_EQ(parseJson(failure.data()), parseJson(R"({"requested":"1900-01-01","supported":["2026-07-28"]})"));
}

TEST(JsonRpc, CutsABatchIntoItsMessages) {
  const std::string batch = R"( [ {"id":1,"a":[1,"]"]} ,2, "x\"" , [] , {"b":{"c":[{}]}},null ] )";
  auto message = parseJsonRpc(batch);
  const auto messages = batchIn(message);
  ASSERT_TRUE(messages);
  std::vector<std::string_view> texts;
  for (const auto& one : *messages) {
    EXPECT_EQ(one.document, parseJson(one.text));
    texts.push_back(one.text);
  }
  EXPECT_EQ(texts, (std::vector<std::string_view>{R"({"id":1,"a":[1,"]"]})", "2", R"("x\"")", "[]",
                                                  R"({"b":{"c":[{}]}})", "null"}));
  const auto isBatch = [](const std::string& text) {
    auto whole = parseJsonRpc(text);
    return batchIn(whole).has_value();
  };
  EXPECT_FALSE(isBatch(R"({"id":[1]})"));
  for (const std::string text : {"[", "[1,]", "[] x", "[]", " [ ] ", "[\"\xFF\"]"}) {
    EXPECT_THROW(isBatch(text), JsonRpcFailure) << text;
  }
}

TEST(JsonRpc, IdsAreTheSameHoweverTheyAreWritten) {
  const auto keyOf = [](const std::string& id) {
    return requestOf(R"({"jsonrpc":"2.0","id":)" + id + R"(,"method":"ping"})")->idKey;
  };
  EXPECT_EQ(keyOf(R"("\u0041\n")"), keyOf(R"("A\u000a")"));
  EXPECT_EQ(keyOf("7"), jsonRpcIdKey(parseJson("7")));
  EXPECT_NE(keyOf("7"), keyOf(R"("7")"));
  EXPECT_NE(keyOf("18446744073709551615"), keyOf("18446744073709551614"));
}

TEST(JsonRpc, FindsTheIdOfACutRequestAtEitherEnd) {
  const auto id = [](std::string_view beginning, std::string_view end) {
    return jsonRpcIdAtAnEnd(beginning, end).value_or("none");
  };
  EXPECT_EQ(id(R"({"jsonrpc":"2.0","id":7,"method":"tools/call","params":{"x":"yy)", R"(yy"}})"), "7");
  EXPECT_EQ(id(R"({"id" : "a\"b", "params":["id", {"id":8}, "yy)", R"(yy"]})"), R"("a\"b")");
  EXPECT_EQ(id(R"({"method":"tools/call","params":{"id":8,"x":"yy)", R"(yy"},"jsonrpc":"2.0","id": 1.50 })"),
            "1.50");
  EXPECT_EQ(id(R"({"params":{"x":"yy)", R"(yy"},"id":"last"})"), R"("last")");
  // What stands inside another member is no id, nor what is cut, nor what is in a string.
  EXPECT_EQ(id(R"({"params":{"id":8,"x":"yy)", R"(yy","id":9}})"), "none");
  EXPECT_EQ(id(R"({"params":{"x":"yy)", R"(yy \"id\":9}"}})"), "none");
  EXPECT_EQ(id(R"({"id":12)", R"(34,"params":{"x":"yy"}})"), "none");
  EXPECT_EQ(id(R"([{"id":7,"x":"yy)", R"(yy"}])"), "none");
  EXPECT_EQ(id("xxxx", "xxxx"), "none");
  EXPECT_EQ(id("", ""), "none");
}

}  // namespace
}  // namespace velmora
