// What the window says in each language: Qt's translations, built into the program.
#pragma once

#include <QtCore/QString>
#include <QtCore/QTranslator>
#include <memory>

#include "VelmoraApp/AppModel/Language.h"

namespace velmora {

/// The translations of one language. English has the plural forms only; what stands in the source is
/// English. For the main thread.
class Translation {
 public:
  /// Throws std::runtime_error when the program holds none for this language.
  explicit Translation(Language language);

  Language language() const { return language_; }

  /// As QCoreApplication::translate, in this language whatever the application speaks.
  QString of(const char* context, const char* source) const;

  /// With which the application speaks this language until the object ends, and writes dates and numbers as
  /// it does until another is installed. Needs the application's object.
  static std::unique_ptr<Translation> installed(Language language);

 private:
  const Language language_;
  QTranslator translator_;  // takes itself out of the application at its end
};

}  // namespace velmora
