#include "VelmoraApp/Help/HelpViewModel.h"

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Help/HelpSections.h"

namespace velmora {

namespace {

QVariantMap valuesOf(const HelpPassage& passage) {
  return {{"text", text(passage.text)},
          {"isNote", passage.kind == HelpPassage::Kind::note},
          {"isCode", passage.kind == HelpPassage::Kind::code},
          {"name", text(passage.name)},
          {"copyHelp", text(passage.copyHelp)}};
}

QVariantMap valuesOf(const HelpSection& section) {
  QVariantList passages;
  for (const auto& passage : section.passages) passages.append(valuesOf(passage));
  return {{"title", text(section.title)}, {"passages", passages}};
}

}  // namespace

HelpViewModel::HelpViewModel(GuideContext context)
    : context_(std::move(context)), language_(helpLanguageFor(context_.preferredLanguages)) {}

QStringList HelpViewModel::languages() const {
  QStringList names;
  for (const auto& traits : helpLanguages) names.append(text(traits.name));
  return names;
}

void HelpViewModel::setLanguageIndex(int index) {
  if (index < 0 || index >= static_cast<int>(helpLanguages.size()) || index == languageIndex()) return;
  language_ = static_cast<HelpLanguage>(index);
  Q_EMIT languageChanged();
}

QString HelpViewModel::languageLabel() const { return text(copy().languageLabel); }

QString HelpViewModel::copyTitle() const { return text(helpTexts(language_).buttonWords.copy); }

QString HelpViewModel::copiedText() const { return text(helpTexts(language_).buttonWords.copied); }

QVariantList HelpViewModel::sections() const {
  QVariantList sections;
  for (const auto& section : helpSections(copy(), context_)) sections.append(valuesOf(section));
  return sections;
}

}  // namespace velmora
