// The user's settings for privacy, retention, policy and the terminal.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

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
  // Only there when the user chose.
  std::optional<TmuxTransportChoice> tmuxTransport{};        ///< Else `automatic`.
  std::optional<ShellIntegrationChoice> shellIntegration{};  ///< Else `automatic`.
  /// Else false. Input to busy windows that the bridge opened and that no user has looked at.
  std::optional<bool> allowOwnBusySessionInput{};
  /// Else false. tmux's own options say what the bridge does.
  std::optional<bool> tmuxMarks{};
  /// Else false. A window that the bridge opens keeps apart what runs in it.
  std::optional<bool> containNewWindows{};
  /// Else empty: the usual one. The absolute path of the tmux server's socket, from the bridge's start on.
  std::optional<std::string> tmuxSocket{};

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
                       outputPreviewMaxCharacters, sessionPolicy, menuBarEnabled, launchAtLoginEnabled,
                       tmuxTransport, shellIntegration, allowOwnBusySessionInput, tmuxMarks,
                       containNewWindows, tmuxSocket))

// A settings file written by an older build still loads.
template <>
inline constexpr auto defaultedMembers<PrivacyRetentionSettings> = EveryMember{};

}  // namespace velmora
