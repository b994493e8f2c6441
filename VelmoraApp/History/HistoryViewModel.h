// The request history: the filter, the matching records, and clearing.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/History/HistoryClearing.h"
#include "VelmoraApp/RecentRequests/RecordListModel.h"

namespace velmora {

/// For the main thread. An empty or unknown tool or status means all of them.
class HistoryViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(velmora::RecordListModel* records READ records CONSTANT)
  Q_PROPERTY(int count READ count NOTIFY countChanged)
  Q_PROPERTY(int totalCount READ totalCount NOTIFY countChanged)
  Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY filterChanged)
  Q_PROPERTY(QString tool READ tool WRITE setTool NOTIFY filterChanged)
  Q_PROPERTY(int toolIndex READ toolIndex WRITE setToolIndex NOTIFY filterChanged)
  Q_PROPERTY(QStringList toolLabels READ toolLabels CONSTANT)
  Q_PROPERTY(QString status READ status WRITE setStatus NOTIFY filterChanged)
  Q_PROPERTY(int statusIndex READ statusIndex WRITE setStatusIndex NOTIFY filterChanged)
  Q_PROPERTY(QStringList statusLabels READ statusLabels CONSTANT)
  Q_PROPERTY(velmora::HistoryClearing* clearing READ clearing CONSTANT)

 public:
  explicit HistoryViewModel(AppModel& model);

  RecordListModel* records() { return &records_; }
  int count() const { return records_.rowCount(); }
  int totalCount() const { return static_cast<int>(model_.records().size()); }

  QString query() const;
  void setQuery(const QString& query);
  QString tool() const;
  void setTool(const QString& tool);
  int toolIndex() const;  ///< Of `toolLabels`; 0 stands for all.
  void setToolIndex(int index);
  QStringList toolLabels() const;
  QString status() const;
  void setStatus(const QString& status);
  int statusIndex() const;  ///< Of `statusLabels`; 0 stands for all.
  void setStatusIndex(int index);
  QStringList statusLabels() const;

  HistoryClearing* clearing() { return &clearing_; }

 Q_SIGNALS:
  void countChanged();
  void filterChanged();

 private:
  void setFilter(HistoryFilter filter);
  void update();

  AppModel& model_;
  RecordListModel records_;
  HistoryFilter filter_;
  HistoryClearing clearing_;
};

}  // namespace velmora
