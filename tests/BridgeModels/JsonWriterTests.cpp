#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Json/JsonWriter.h"
#include "BridgeModels/ToolPayloads.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

TEST(JsonWriter, EscapesQuotesBackslashesAndControls) {
  EXPECT_EQ(encodeJson(std::string("a\"b\\c\n\r\t\x01\x1f\x7f/한👩")),
            "\"a\\\"b\\\\c\\n\\r\\t\\u0001\\u001f\x7f/한👩\"");
  EXPECT_EQ(encodeJson(std::string("a\0b", 3)), R"("a\u0000b")");
}

TEST(JsonWriter, WritesTheShortestNumberThatReadsBack) {
  EXPECT_EQ(encodeJson(0.1), "0.1");
  EXPECT_EQ(encodeJson(1e300), "1e+300");
  EXPECT_EQ(encodeJson(std::int64_t{-9223372036854775807 - 1}), "-9223372036854775808");
  for (const double value : {1.0 / 3, 5e-324, std::numeric_limits<double>::max(), 817000000.123456}) {
    EXPECT_EQ(decodeJson<double>(encodeJson(value)), value);
  }
}

TEST(JsonWriter, NeverWritesADateWithAnExponent) {
  EXPECT_EQ(encodeJson(Date{1e22}), "10000000000000000000000");
  EXPECT_EQ(encodeJson(Date{817000000.5}), "817000000.5");
  EXPECT_EQ(encodeJson(Date{1e-7}), "0.0000001");
  EXPECT_EQ(encodeJson(Date{std::numeric_limits<double>::denorm_min()}).find('e'), std::string::npos);
}

TEST(JsonWriter, RefusesWhatJsonCannotCarry) {
  EXPECT_THROW(encodeJson(std::nan("")), JsonEncodeError);
  EXPECT_THROW(encodeJson(Date{std::numeric_limits<double>::infinity()}), JsonEncodeError);
  EXPECT_THROW(encodeJson(Date{1e18}, JsonFormat::store), JsonEncodeError);
}

TEST(JsonWriter, LaysOutNestedValuesForReading) {
  const JSONValue value(JSONObject{
      {"empty", JSONArray{}}, {"list", JSONArray{1, JSONObject{{"a", nullptr}}}}, {"none", JSONObject{}}});
  EXPECT_EQ(
      encodeJson(value, JsonFormat::store),
      "{\n  \"empty\": [],\n  \"list\": [\n    1,\n    {\n      \"a\": null\n    }\n  ],\n  \"none\": {}\n}");
  EXPECT_EQ(encodeJson(value), R"({"empty":[],"list":[1,{"a":null}],"none":{}})");
}

TEST(JsonWriter, TakesAValueThatIsTextAlreadyAsItStands) {
  JsonWriter writer(JsonFormat::wire);
  writer.beginArray();
  writer.raw("1.50");
  writer.beginObject();
  writer.key("a");
  writer.raw("{ }");
  writeMember(writer, "b", "c");
  writer.endObject();
  writer.raw("null");
  writer.endArray();
  EXPECT_EQ(writer.take(), R"([1.50,{"a":{ },"b":"c"},null])");
}

TEST(JsonWriter, WritesDatesForPeopleWithMilliseconds) {
  EXPECT_EQ(encodeJson(Date{0.25}, JsonFormat::people), R"("2001-01-01T00:00:00.250Z")");
  EXPECT_THROW(encodeJson(Date{1e18}, JsonFormat::people), JsonEncodeError);
}

template <class Record>
void expectSortedLikeADynamicValue(const Record& record) {
  const auto text = encodeJson(record);
  EXPECT_EQ(encodeJson(KeysSorted<Record>{&record}), encodeJson(decodeJson<JSONValue>(text)));
  EXPECT_EQ(encodeJson(record), text);
}

TEST(JsonWriter, SortsTheKeysOfARecordAsThoseOfADynamicValue) {
  expectSortedLikeADynamicValue(StatusPayload{testing::sampleStatus()});
  expectSortedLikeADynamicValue(SessionsPayload{{testing::sampleSession(), testing::sampleSession()}});
  expectSortedLikeADynamicValue(testing::sampleRecord());
  expectSortedLikeADynamicValue(
      KeyPayload(testing::sampleId('A'), TerminalKey::tab, 2, Date{817000000.123456}));
}

TEST(JsonWriter, SortsNoKeysBehindTheRecordThatAsksForIt) {
  using Result = ToolResult<KeysSorted<SessionReference>>;
  const SessionReference reference{.sessionId = testing::sampleId('A'), .title = "t"};
  const auto text = encodeJson(
      Result{.ok = true, .data = KeysSorted<SessionReference>{&reference}, .error = StructuredError{}});
  EXPECT_NE(text.find(R"("error":{"code")"), std::string::npos) << text;
}

}  // namespace
}  // namespace velmora
