// The languages that the help is written in.
#pragma once

#include <QtCore/QStringList>
#include <array>
#include <string_view>

#include "BridgeModels/WireNames.h"

namespace velmora {

BOOST_DEFINE_ENUM_CLASS(HelpLanguage, english, korean)

struct HelpLanguageTraits {
  HelpLanguage language;
  std::string_view name;  ///< In the language itself.
};

inline constexpr auto helpLanguages = std::to_array<HelpLanguageTraits>({
    {HelpLanguage::english, "English"},
    {HelpLanguage::korean, "한국어"},
});

/// For a user who reads these languages (tags such as "ko-KR"), the most preferred one first.
inline HelpLanguage helpLanguageFor(const QStringList& preferredLanguages) {
  const bool korean = !preferredLanguages.isEmpty() && preferredLanguages.first().startsWith("ko");
  return korean ? HelpLanguage::korean : HelpLanguage::english;
}

}  // namespace velmora
