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

HelpViewModel::HelpViewModel(GuideContext context, Language language)
    : context_(std::move(context)), language_(language), copy_(helpCopy(language_, context_.terminal)) {}

QStringList HelpViewModel::languages() const {
  QStringList names;
  for (const auto& traits : velmora::languages) names.append(text(traits.name));
  return names;
}

void HelpViewModel::setLanguageIndex(int index) {
  if (index < 0 || index >= static_cast<int>(velmora::languages.size()) || index == languageIndex()) return;
  language_ = static_cast<Language>(index);
  copy_ = helpCopy(language_, context_.terminal);
  Q_EMIT languageChanged();
}

QString HelpViewModel::languageLabel() const { return text(copy_.languageLabel); }

QString HelpViewModel::copyTitle() const { return text(copy_.copy); }

QString HelpViewModel::copiedText() const { return text(copy_.copied); }

QVariantList HelpViewModel::sections() const {
  QVariantList sections;
  for (const auto& section : helpSections(copy_, context_)) sections.append(valuesOf(section));
  return sections;
}

}  // namespace velmora
