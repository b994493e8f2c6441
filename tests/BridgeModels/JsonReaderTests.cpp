#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/ToolInputs.h"

namespace velmora {
namespace {

template <class T>
std::string problemOf(const std::string& text, JsonFormat format = JsonFormat::wire) {
  try {
    decodeJson<T>(text, format);
  } catch (const JsonDecodeError& error) {
    return error.what();
  }
  return "no error";
}

constexpr const char* someId = "12345678-90AB-CDEF-1234-567890ABCDEF";

TEST(JsonReader, ReadsEveryKindOfValue) {
  EXPECT_EQ(decodeJson<JSONValue>("1"), JSONValue(1));
  EXPECT_EQ(decodeJson<JSONValue>("1.5"), JSONValue(1.5));
  EXPECT_EQ(decodeJson<JSONValue>("true"), JSONValue(true));
  EXPECT_EQ(decodeJson<JSONValue>("null"), JSONValue(nullptr));
  EXPECT_EQ(decodeJson<JSONValue>("\"a\\u0000\\ud83d\\ude00\""), JSONValue(std::string("a\0😀", 6)));
  EXPECT_EQ(decodeJson<JSONValue>("[1,{\"a\":[]}]"), JSONValue(JSONArray{1, JSONObject{{"a", JSONArray{}}}}));
  EXPECT_EQ(encodeJson(JSONValue(JSONObject{})), "{}");
  EXPECT_NE(JSONValue(1), JSONValue(true));
  EXPECT_NE(JSONValue(1), JSONValue(1.5));
}

TEST(JsonReader, ReadsAnIntegralNumberAsAnInteger) {
  EXPECT_EQ(decodeJson<JSONValue>("3.0"), JSONValue(3));
  EXPECT_EQ(decodeJson<JSONValue>("1e3"), JSONValue(1000));
  EXPECT_EQ(decodeJson<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(decodeJson<JSONValue>("9223372036854775808"), JSONValue(9223372036854775808.0));
  EXPECT_EQ(decodeJson<JSONValue>("-9223372036854775809"), JSONValue(-9223372036854775808.0));
  EXPECT_EQ(problemOf<std::int64_t>("-9223372036854775809"), "expected a 64-bit integer");
  EXPECT_EQ(decodeJson<double>("7"), 7.0);
}

TEST(JsonReader, NeverMixesBooleansAndNumbers) {
  EXPECT_EQ(problemOf<bool>("1"), "expected true or false");
  EXPECT_EQ(problemOf<std::int64_t>("true"), "expected a 64-bit integer");
  EXPECT_EQ(problemOf<double>("false"), "expected a number");
}

TEST(JsonReader, RefusesNumbersOutsideTheirType) {
  EXPECT_EQ(problemOf<std::int64_t>("9223372036854775808"), "expected a 64-bit integer");
  EXPECT_EQ(problemOf<std::int64_t>("1.5"), "expected a 64-bit integer");
  EXPECT_EQ(problemOf<std::int32_t>("2147483648"), "number out of range");
  EXPECT_EQ(problemOf<std::uint32_t>("-1"), "number out of range");
  EXPECT_EQ(decodeJson<std::uint32_t>("4294967295"), 4294967295u);
}

TEST(JsonReader, NamesThePathOfAProblem) {
  const std::string id = std::string("\"sessionId\":\"") + someId + "\"";
  EXPECT_EQ(problemOf<SendKeyInput>("{" + id + ",\"key\":\"Escape\"}"), "key: unknown value \"Escape\"");
  EXPECT_EQ(problemOf<SendKeyInput>("{" + id + "}"), "key: missing");
  EXPECT_EQ(problemOf<SendKeyInput>("{\"sessionId\":\"x\",\"key\":\"escape\"}"),
            "sessionId: expected a UUID");
  EXPECT_EQ(problemOf<std::vector<SessionReference>>("[{" + id + "},{" + id + ",\"title\":1}]"),
            "[1].title: expected a string");
  EXPECT_EQ(problemOf<SendKeyInput>("[]"), "expected an object");
  EXPECT_EQ(problemOf<std::vector<std::string>>("{}"), "expected an array");
}

TEST(JsonReader, TakesNullForNoValueAndIgnoresUnknownKeys) {
  const auto reference = decodeJson<SessionReference>(std::string(R"({"sessionId":")") + someId +
                                                      R"(","title":null,"unheardOf":[1]})");
  EXPECT_EQ(reference.title, std::nullopt);
  EXPECT_EQ(problemOf<SessionReference>(R"({"sessionId":null})"), "sessionId: missing");
}

TEST(JsonReader, TakesTheLastOfDuplicateKeys) {
  EXPECT_EQ(decodeJson<ListSessionsInput>(R"({"includeBusy":true,"includeBusy":false})").includeBusy, false);
  EXPECT_EQ(decodeJson<JSONValue>(R"({"a":1,"a":2})"), JSONValue(JSONObject{{"a", 2}}));
}

TEST(JsonReader, RefusesDeepNestingWithoutACrash) {
  EXPECT_NE(problemOf<JSONValue>(std::string(100000, '[')), "no error");
  EXPECT_NE(problemOf<JSONValue>(std::string(100000, '[') + std::string(100000, ']')), "no error");
  std::string objects;
  for (int level = 0; level < 100000; ++level) objects += "{\"a\":";
  EXPECT_NE(problemOf<JSONValue>(objects), "no error");
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_EQ(problemOf<JSONValue>(nested(128)), "no error");
  EXPECT_NE(problemOf<JSONValue>(nested(129)), "no error");
}

TEST(JsonReader, RefusesANumberOfAMillionDigits) {
  const std::string digits(1 << 20, '9');
  EXPECT_NE(problemOf<JSONValue>(digits), "no error");
  EXPECT_NE(problemOf<double>(digits), "no error");
  EXPECT_NE(problemOf<JSONValue>("1e999"), "no error");
  EXPECT_EQ(decodeJson<double>("0." + std::string(1 << 20, '0')), 0.0);
}

TEST(JsonReader, ReadsEveryDoubleToTheLastBit) {
  std::mt19937_64 random(42);
  std::uniform_real_distribution<double> seconds(0, 1e9);
  for (int count = 0; count < 100000; ++count) {
    const Date date{seconds(random)};
    ASSERT_EQ(decodeJson<Date>(encodeJson(date)), date) << encodeJson(date);
    std::uint64_t bits = random();
    double any = 0;
    std::memcpy(&any, &bits, sizeof any);
    if (std::isfinite(any)) {
      ASSERT_EQ(decodeJson<double>(encodeJson(any)), any) << encodeJson(any);
    }
  }
  const std::string manyDigits =
      "0.1000000000000000055511151231257827021181583404541015625" + std::string(2000, '0') + "1";
  EXPECT_EQ(decodeJson<double>(manyDigits), 0.1);
}

TEST(JsonReader, RefusesWhatIsNoJson) {
  for (const auto* text : {"",
                           " ",
                           "{",
                           "[1,]",
                           "{\"a\":1,}",
                           "NaN",
                           "Infinity",
                           "-",
                           "01",
                           "'a'",
                           "// a\n1",
                           "1 2",
                           "\"\\ud800\"",
                           "\"\\udc00\"",
                           "\"\\ud800\\ud800\"",
                           "\"\xff\"",
                           "\"\xed\xa0\x80\"",
                           "\"\x01\"",
                           "\xEF\xBB\xBF{}",
                           "tru",
                           "\"abc"}) {
    EXPECT_NE(problemOf<JSONValue>(text), "no error") << text;
  }
}

TEST(JsonReader, ReadsDatesByTheFormat) {
  EXPECT_EQ(decodeJson<Date>("1.5"), Date{1.5});
  EXPECT_EQ(decodeJson<Date>("\"2001-01-01T00:00:01Z\"", JsonFormat::store), Date{1});
  EXPECT_EQ(problemOf<Date>("\"2001-01-01T00:00:01Z\""), "expected a number");
  EXPECT_EQ(problemOf<Date>("1", JsonFormat::store), "expected a string");
  EXPECT_EQ(problemOf<Date>("\"yesterday\"", JsonFormat::store), "expected an ISO 8601 date");
}

}  // namespace
}  // namespace velmora
