#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/PrivacyRetentionSettings.h"

namespace velmora {
namespace {

PrivacyRetentionSettings normalized(PrivacyRetentionSettings settings) {
  settings.normalize();
  return settings;
}

TEST(PrivacyRetentionSettings, AnEmptyObjectGivesTheDefaults) {
  const auto settings = decodeJson<PrivacyRetentionSettings>("{}");
  EXPECT_EQ(settings, PrivacyRetentionSettings{});
  EXPECT_FALSE(settings.persistentHistoryEnabled);
  EXPECT_FALSE(settings.storeCommandBody);
  EXPECT_FALSE(settings.storeOutputPreview);
  EXPECT_TRUE(settings.maskSensitivePatterns);
  EXPECT_TRUE(settings.deleteOnAppExit);
  EXPECT_FALSE(settings.allowBusySessionInput);
  EXPECT_EQ(settings.retentionDays, 7);
  EXPECT_EQ(settings.maximumRecordCount, 1000);
  EXPECT_EQ(settings.outputPreviewMaxCharacters, 2000);
  EXPECT_EQ(settings.sessionPolicy, SessionPolicy::safe);
  EXPECT_TRUE(settings.menuBarEnabled);
  EXPECT_FALSE(settings.launchAtLoginEnabled);
}

TEST(PrivacyRetentionSettings, NullTakesTheDefaultAndAWrongTypeFails) {
  EXPECT_EQ(decodeJson<PrivacyRetentionSettings>(R"({"retentionDays":null})").retentionDays, 7);
  EXPECT_THROW(decodeJson<PrivacyRetentionSettings>(R"({"retentionDays":"7"})"), JsonDecodeError);
  EXPECT_THROW(decodeJson<PrivacyRetentionSettings>(R"({"sessionPolicy":"Safe"})"), JsonDecodeError);
}

TEST(PrivacyRetentionSettings, DecodingKeepsWhatNormalizingBringsIntoRange) {
  auto settings = decodeJson<PrivacyRetentionSettings>(R"({"retentionDays":0})");
  EXPECT_EQ(settings.retentionDays, 0);
  EXPECT_EQ(normalized(settings).retentionDays, 1);
  EXPECT_EQ(normalized({.retentionDays = 400}).retentionDays, 365);
  EXPECT_EQ(normalized({.maximumRecordCount = 20000}).maximumRecordCount, 10000);
  EXPECT_EQ(normalized({.maximumRecordCount = 0}).maximumRecordCount, 1);
  EXPECT_EQ(normalized({.outputPreviewMaxCharacters = -5}).outputPreviewMaxCharacters, 0);
  EXPECT_EQ(normalized({.outputPreviewMaxCharacters = 20000}).outputPreviewMaxCharacters, 10000);
}

TEST(PrivacyRetentionSettings, WithoutHistoryNothingSensitiveIsStored) {
  const PrivacyRetentionSettings settings{.storeCommandBody = true,
                                          .storeOutputPreview = true,
                                          .allowBusySessionInput = true,
                                          .retentionDays = 30};
  EXPECT_EQ(normalized(settings),
            (PrivacyRetentionSettings{.allowBusySessionInput = true, .retentionDays = 30}));
  auto kept = settings;
  kept.persistentHistoryEnabled = true;
  EXPECT_EQ(normalized(kept), kept);
}

}  // namespace
}  // namespace velmora
