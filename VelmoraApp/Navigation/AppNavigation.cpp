#include "VelmoraApp/Navigation/AppNavigation.h"

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

AppNavigation::AppNavigation(AppModel& model) : model_(model) {
  if (!model_.selectedSection()) model_.selectSection(AppSection::dashboard);
  connect(&model_, &AppModel::selectedSectionChanged, this, &AppNavigation::selectedSectionChanged);
}

QString AppNavigation::selectedSection() const {
  return wireText(model_.selectedSection().value_or(AppSection::dashboard));
}

void AppNavigation::setSelectedSection(const QString& name) {
  if (const auto section = fromWireText<AppSection>(name)) model_.selectSection(*section);
  Q_EMIT selectedSectionChanged();  // even if nothing changed, so that the list shows the selection again
}

int AppNavigation::selectedIndex() const {
  return static_cast<int>(model_.selectedSection().value_or(AppSection::dashboard));
}

void AppNavigation::setSelectedIndex(int index) {
  const bool exists = index >= 0 && index < static_cast<int>(appSections.size());
  setSelectedSection(exists ? wireText(static_cast<AppSection>(index)) : QString());
}

}  // namespace velmora
