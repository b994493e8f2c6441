// The user's settings for privacy, retention and policy.
#pragma once

#include <cstdint>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/IntegerRange.h"
#include "BridgeModels/Records.h"

namespace velmora {

struct PrivacyRetentionSettings {
  static constexpr IntegerRange retentionDaysRange{1, 365};
  static constexpr IntegerRange maximumRecordCountRange{1, 10000};
  static constexpr IntegerRange outputPreviewMaxCharactersRange{0, 10000};

  bool persistentHistoryEnabled = false;
  bool storeCommandBody = false;
  bool storeOutputPreview = false;
  bool maskSensitivePatterns = true;
  bool deleteOnAppExit = true;
  bool allowBusySessionInput = false;
  std::int64_t retentionDays = 7;
  std::int64_t maximumRecordCount = 1000;
  std::int64_t outputPreviewMaxCharacters = 2000;
  SessionPolicy sessionPolicy = SessionPolicy::safe;
  bool menuBarEnabled = true;
  bool launchAtLoginEnabled = false;

  /// Brings every number into its range. Without persistent history nothing sensitive is stored either.
  void normalize() {
    retentionDays = retentionDaysRange.nearest(retentionDays);
    maximumRecordCount = maximumRecordCountRange.nearest(maximumRecordCount);
    outputPreviewMaxCharacters = outputPreviewMaxCharactersRange.nearest(outputPreviewMaxCharacters);
    storeCommandBody = storeCommandBody && persistentHistoryEnabled;
    storeOutputPreview = storeOutputPreview && persistentHistoryEnabled;
  }

  bool operator==(const PrivacyRetentionSettings&) const = default;
};
BOOST_DESCRIBE_STRUCT(PrivacyRetentionSettings, (),
                      (persistentHistoryEnabled, storeCommandBody, storeOutputPreview, maskSensitivePatterns,
                       deleteOnAppExit, allowBusySessionInput, retentionDays, maximumRecordCount,
                       outputPreviewMaxCharacters, sessionPolicy, menuBarEnabled, launchAtLoginEnabled))

// A settings file written by an older build still loads.
template <>
inline constexpr auto defaultedMembers<PrivacyRetentionSettings> = EveryMember{};

}  // namespace velmora
