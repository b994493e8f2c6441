#include "VelmoraApp/AppModel/Translation.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <stdexcept>
#include <string>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

QLocale::Language qtLanguageOf(Language language) {
  return language == Language::korean ? QLocale::Korean : QLocale::English;
}

// The user's own habits where they belong to the language, else those of most of its speakers.
QLocale localeFor(Language language) {
  const auto system = QLocale::system();
  const bool speaksIt = system.language() == qtLanguageOf(language) ||
                        (language == Language::english && system.language() == QLocale::C);
  return speaksIt ? system : QLocale(qtLanguageOf(language));
}

}  // namespace

Translation::Translation(Language language) : language_(language) {
  const auto file = ":/velmora/translations/velmora_" + text(traitsOf(language).code) + ".qm";
  if (!translator_.load(file)) throw std::runtime_error(file.toStdString() + " is missing");
}

QString Translation::of(const char* context, const char* source) const {
  const auto translated = translator_.translate(context, source);
  return translated.isEmpty() ? QString::fromUtf8(source) : translated;
}

std::unique_ptr<Translation> Translation::installed(Language language) {
  auto translation = std::make_unique<Translation>(language);
  QLocale::setDefault(localeFor(language));
  QCoreApplication::installTranslator(&translation->translator_);
  return translation;
}

}  // namespace velmora
