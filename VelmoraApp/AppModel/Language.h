// The languages that the window speaks.
#pragma once

#include <QtCore/QStringList>
#include <array>
#include <optional>
#include <string_view>

#include "BridgeModels/WireNames.h"

namespace velmora {

BOOST_DEFINE_ENUM_CLASS(Language, english, korean)

struct LanguageTraits {
  Language language;
  std::string_view code;  ///< Of ISO 639-1; names the file of its translations, and the user's choice.
  std::string_view name;  ///< In the language itself.
};

inline constexpr auto languages = std::to_array<LanguageTraits>({
    {Language::english, "en", "English"},
    {Language::korean, "ko", "한국어"},
});

constexpr const LanguageTraits& traitsOf(Language language) {
  return languages[static_cast<std::size_t>(language)];
}

/// The language with this code; nothing for any other text.
inline std::optional<Language> languageOf(const QString& code) {
  for (const auto& traits : languages) {
    if (code == QLatin1String(traits.code.data(), static_cast<qsizetype>(traits.code.size())))
      return traits.language;
  }
  return std::nullopt;
}

/// For a user who reads these languages (tags such as "ko-KR"), the most preferred one first.
inline Language languageFor(const QStringList& preferredLanguages) {
  const bool korean = !preferredLanguages.isEmpty() && preferredLanguages.first().startsWith("ko");
  return korean ? Language::korean : Language::english;
}

}  // namespace velmora
