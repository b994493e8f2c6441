// What tests read of a list model: by row and name of the role.
#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QStringList>
#include <string>
#include <vector>

namespace velmora::testing {

inline QVariant cell(const QAbstractItemModel& model, int row, const char* role) {
  return model.data(model.index(row, 0), model.roleNames().key(role, -1));
}

inline std::string textCell(const QAbstractItemModel& model, int row, const char* role) {
  return cell(model, row, role).toString().toStdString();
}

/// One role of every row.
inline std::vector<std::string> column(const QAbstractItemModel& model, const char* role) {
  std::vector<std::string> texts;
  for (int row = 0; row < model.rowCount(); ++row) texts.push_back(textCell(model, row, role));
  return texts;
}

inline std::vector<std::string> texts(const QStringList& list) {
  std::vector<std::string> result;
  for (const auto& entry : list) result.push_back(entry.toStdString());
  return result;
}

}  // namespace velmora::testing
