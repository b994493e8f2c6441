#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Tools/DatesForPeople.h"

namespace velmora {
namespace {

boost::json::value rewritten(JSONValue payload) {
  writeDatesForPeople(payload);
  return parseJson(encodeJson(payload));
}

TEST(DatesForPeople, AreWrittenWhereverTheyStand) {
  EXPECT_EQ(rewritten(JSONObject{{"deliveredAt", 0},
                                 {"sessions", JSONArray{JSONObject{{"lastSeenAt", 785999999.25}}}}}),
            parseJson(R"({"deliveredAt":"2001-01-01T00:00:00.000Z",
                          "sessions":[{"lastSeenAt":"2025-11-28T05:19:59.250Z"}]})"));
}

TEST(DatesForPeople, AreCutToTheMillisecondTowardsThePast) {
  EXPECT_EQ(rewritten(JSONObject{{"aAt", 0.9999}}), parseJson(R"({"aAt":"2001-01-01T00:00:00.999Z"})"));
  EXPECT_EQ(rewritten(JSONObject{{"aAt", -0.25}}), parseJson(R"({"aAt":"2000-12-31T23:59:59.750Z"})"));
}

TEST(DatesForPeople, LeaveAloneWhatIsNoDate) {
  const JSONObject data{{"text", "deliveredAt"}, {"boughtAt", "noon"},    {"count", 5},
                        {"farAt", 1e300},        {"noneAt", JSONValue()}, {"Attic", 3}};
  EXPECT_EQ(rewritten(data), parseJson(encodeJson(data)));
}

}  // namespace
}  // namespace velmora
