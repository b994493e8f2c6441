// The rows of the sidebar.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QAbstractListModel>

#include "VelmoraApp/AppModel/AppSection.h"

namespace velmora {

/// Never changes but for the language. Roles: section, title, symbol.
class SectionListModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by AppNavigation")

 public:
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  void retranslate() { Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, 0)); }

 private:
  enum Role : int;
};

}  // namespace velmora
