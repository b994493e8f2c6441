// The sidebar and the section that it selects.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/Navigation/SectionListModel.h"

namespace velmora {

/// Shows the dashboard until another section is selected.
class AppNavigation : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(velmora::SectionListModel* sections READ sections CONSTANT)
  Q_PROPERTY(
      QString selectedSection READ selectedSection WRITE setSelectedSection NOTIFY selectedSectionChanged)
  Q_PROPERTY(int selectedIndex READ selectedIndex WRITE setSelectedIndex NOTIFY selectedSectionChanged)
  Q_PROPERTY(bool showsSettings READ showsSettings NOTIFY selectedSectionChanged)
  Q_PROPERTY(bool showsHelp READ showsHelp NOTIFY selectedSectionChanged)

 public:
  explicit AppNavigation(AppModel& model);

  SectionListModel* sections() { return &sections_; }
  QString selectedSection() const;
  void setSelectedSection(const QString& name);
  int selectedIndex() const;
  void setSelectedIndex(int index);
  bool showsSettings() const { return shows(AppSection::settings); }
  bool showsHelp() const { return shows(AppSection::help); }

  Q_INVOKABLE void showHistory() { model_.selectSection(AppSection::history); }
  Q_INVOKABLE void showSettings() { model_.selectSection(AppSection::settings); }

 Q_SIGNALS:
  void selectedSectionChanged();

 private:
  bool shows(AppSection section) const { return model_.selectedSection() == section; }

  AppModel& model_;
  SectionListModel sections_;
};

}  // namespace velmora
