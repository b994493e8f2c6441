#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonAs.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/ToolPayloads.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

std::string rewritten(const std::string& text) {
  return withJson(text, [](const boost::json::value& document) { return encodeJson(JsonPart{&document}); });
}

template <class Value>
std::string rewrittenAs(const std::string& text, JsonFormat format = JsonFormat::people) {
  return withJson(text, [format](const boost::json::value& document) {
    return encodeJson(JsonAs<Value>{{&document}}, format);
  });
}

TEST(JsonPart, IsWrittenAsTheDynamicValueIs) {
  for (const std::string text :
       {"null", "true", "-0.0", "3.0", "1e3", "1.5", "1e300", "9223372036854775808", "18446744073709551615",
        "-9223372036854775808", R"("a\"\u0001\ud83d\ude00")", "[]", "{}",
        R"([1,[{"b":1,"a":{"d":[],"c":null}}]])", R"({"z":1,"":2,"a":{"y":1,"x":2},"a":{"y":1.0,"x":2}})"}) {
    EXPECT_EQ(rewritten(text), encodeJson(decodeJson<JSONValue>(text))) << text;
  }
}

TEST(JsonPart, MembersAreReadFromAnObjectOnly) {
  const auto read = [](const std::string& text) {
    return withJson(text, [](const boost::json::value& document) {
      JsonMembers members;
      JsonReader(document).read(members);
      return encodeJson(members);
    });
  };
  EXPECT_EQ(read(R"({"b":1,"a":[]})"), R"({"a":[],"b":1})");
  EXPECT_THROW(read("[]"), JsonDecodeError);
  EXPECT_THROW(read("null"), JsonDecodeError);
}

TEST(JsonAs, WritesDatesForPeopleWhereverTheRecordHasThem) {
  EXPECT_EQ(rewrittenAs<CommandPayload>(R"({"deliveredAt":0})"),
            R"({"deliveredAt":"2001-01-01T00:00:00.000Z"})");
  EXPECT_EQ(rewrittenAs<SessionsPayload>(
                R"({"sessions":[{"lastSeenAt":785999999.25,"lastRequestAt":0},{"lastRequestAt":null}]})"),
            R"({"sessions":[{"lastRequestAt":"2001-01-01T00:00:00.000Z",)"
            R"("lastSeenAt":"2025-11-28T05:19:59.250Z"},{"lastRequestAt":null}]})");
}

TEST(JsonAs, LeavesEverythingElseAsItIs) {
  for (const std::string text :
       {R"({"session":{"closedAt":1.5,"tty":7,"windowId":{"firstSeenAt":1}}})",
        R"({"session":[{"firstSeenAt":1}]})", R"({"session":null,"text":"lastSeenAt"})",
        R"([{"session":{}}])", R"({"session":{"firstSeenAt":"noon"}})"}) {
    EXPECT_EQ(rewrittenAs<SessionPayload>(text), rewritten(text));
  }
}

TEST(JsonAs, LeavesADateThatHasNoTextANumber) {
  EXPECT_EQ(rewrittenAs<FocusPayload>(R"({"focusedAt":1e300})"), R"({"focusedAt":1e+300})");
  EXPECT_EQ(rewrittenAs<FocusPayload>(R"({"focusedAt":1e18})"), R"({"focusedAt":1000000000000000000})");
}

TEST(JsonAs, OfAWholeRecordIsTheRecordWithSortedKeys) {
  const StatusPayload payload{testing::sampleStatus()};
  EXPECT_EQ(rewrittenAs<StatusPayload>(encodeJson(payload), JsonFormat::wire),
            encodeJson(KeysSorted<StatusPayload>{&payload}));
}

}  // namespace
}  // namespace velmora
