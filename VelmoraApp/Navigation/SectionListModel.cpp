#include "VelmoraApp/Navigation/SectionListModel.h"

#include <QtCore/QCoreApplication>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

enum SectionListModel::Role : int { sectionRole = Qt::UserRole, titleRole, symbolRole };

int SectionListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(appSections.size());
}

QVariant SectionListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& traits = appSections[static_cast<std::size_t>(index.row())];
  switch (role) {
    case sectionRole:
      return wireText(traits.section);
    case titleRole:
      return QCoreApplication::translate("AppSection", traits.title);
    case symbolRole:
      return text(traits.symbol);
    default:
      return {};
  }
}

QHash<int, QByteArray> SectionListModel::roleNames() const {
  return {{sectionRole, "section"}, {titleRole, "title"}, {symbolRole, "symbol"}};
}

}  // namespace velmora
