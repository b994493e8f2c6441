// Which language the user wants the window to speak.
#pragma once

#include <QtCore/QObject>
#include <optional>
#include <utility>

#include "VelmoraApp/AppModel/Language.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Platform/UserDefaults.h"

namespace velmora {

/// For the main thread. Kept among the user defaults: "system", or the code of a language.
class LanguagePreference : public QObject {
  Q_OBJECT

 public:
  /// `defaults` must outlive it. `preferredLanguages` are the system's, as in GuideContext.
  LanguagePreference(UserDefaults& defaults, const QStringList& preferredLanguages)
      : defaults_(defaults), systemLanguage_(languageFor(preferredLanguages)) {}

  /// Nothing follows the system.
  std::optional<Language> choice() const { return languageOf(defaults_.text(userDefault::language)); }
  void setChoice(std::optional<Language> choice) {
    if (choice == this->choice()) return;
    defaults_.set(userDefault::language, choice ? text(traitsOf(*choice).code) : QString("system"));
    Q_EMIT changed();
  }

  Language language() const { return choice().value_or(systemLanguage_); }

 Q_SIGNALS:
  void changed();

 private:
  UserDefaults& defaults_;
  const Language systemLanguage_;
};

}  // namespace velmora
