// The help: how to set Velmora up and how a client calls it, in the user's language.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariantList>

#include "VelmoraApp/Help/HelpCopy.h"
#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

/// For the main thread. Opens in the window's language; another choice lasts until the application ends or
/// speaks another one itself.
class HelpViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(QStringList languages READ languages CONSTANT)
  Q_PROPERTY(int languageIndex READ languageIndex WRITE setLanguageIndex NOTIFY languageChanged)
  Q_PROPERTY(QString languageLabel READ languageLabel NOTIFY languageChanged)
  Q_PROPERTY(QString copyTitle READ copyTitle NOTIFY languageChanged)
  Q_PROPERTY(QString copiedText READ copiedText NOTIFY languageChanged)
  Q_PROPERTY(QVariantList sections READ sections NOTIFY languageChanged)

 public:
  HelpViewModel(GuideContext context, Language language);

  Language language() const { return language_; }
  QStringList languages() const;  ///< Each by its own name.
  int languageIndex() const { return static_cast<int>(language_); }
  void setLanguageIndex(int index);  ///< Ignores what is no language.
  QString languageLabel() const;
  QString copyTitle() const;
  QString copiedText() const;
  /// Each {title, passages}; a passage is {text, isNote, isCode, name, copyHelp}. Their number does not
  /// depend on the language.
  QVariantList sections() const;

 Q_SIGNALS:
  void languageChanged();

 private:
  const GuideContext context_;
  Language language_;
  HelpCopy copy_;
};

}  // namespace velmora
