#include "BridgeModels/PrivacyRetentionSettings.h"

#include <algorithm>

namespace velmora {

void PrivacyRetentionSettings::normalize() {
  retentionDays = std::clamp<std::int64_t>(retentionDays, 1, 365);
  maximumRecordCount = std::clamp<std::int64_t>(maximumRecordCount, 1, 10000);
  outputPreviewMaxCharacters = std::clamp<std::int64_t>(outputPreviewMaxCharacters, 0, 10000);
  if (!persistentHistoryEnabled) {
    storeCommandBody = false;
    storeOutputPreview = false;
  }
}

}  // namespace velmora
