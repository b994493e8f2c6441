// The request history: the filter, the matching records, and clearing.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/History/HistoryClearing.h"
#include "VelmoraApp/RecentRequests/RecordListModel.h"
#include "VelmoraApp/RecentRequests/SessionTitles.h"

namespace velmora {

/// For the main thread. An empty or unknown tool or status means all of them.
class HistoryViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(velmora::RecordListModel* records READ records CONSTANT)
  Q_PROPERTY(int count READ count NOTIFY countChanged)
  Q_PROPERTY(bool shown MEMBER shown_ WRITE setShown NOTIFY shownChanged)
  Q_PROPERTY(int totalCount READ totalCount NOTIFY countChanged)
  Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY filterChanged)
  Q_PROPERTY(QString tool READ tool WRITE setTool NOTIFY filterChanged)
  Q_PROPERTY(int toolIndex READ toolIndex WRITE setToolIndex NOTIFY filterChanged)
  Q_PROPERTY(QStringList toolLabels READ toolLabels NOTIFY filterChanged)
  Q_PROPERTY(QString status READ status WRITE setStatus NOTIFY filterChanged)
  Q_PROPERTY(int statusIndex READ statusIndex WRITE setStatusIndex NOTIFY filterChanged)
  Q_PROPERTY(QStringList statusLabels READ statusLabels NOTIFY filterChanged)
  Q_PROPERTY(QString notKept READ notKept NOTIFY settingsChanged)
  Q_PROPERTY(bool includeOwn READ includeOwn WRITE setIncludeOwn NOTIFY filterChanged)
  Q_PROPERTY(velmora::HistoryClearing* clearing READ clearing CONSTANT)

 public:
  /// Both must outlive it.
  HistoryViewModel(AppModel& model, const SessionTitles& names);

  RecordListModel* records() { return &records_; }
  int count() const { return records_.rowCount(); }
  int totalCount() const { return totalCount_; }  ///< Without the filter.

  /// Records are only listed while somebody sees them: there may be ten thousand, and each request changes
  /// them.
  void setShown(bool shown);

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

  bool includeOwn() const { return includeOwn_; }  ///< Whether what the screens ask for is listed, too.
  void setIncludeOwn(bool include);

  QString notKept() const;  ///< What the settings leave out of the history; empty when nothing.

  HistoryClearing* clearing() { return &clearing_; }

  /// The window speaks another language: its rows are shown, and searched, anew.
  void retranslate();

 Q_SIGNALS:
  void countChanged();
  void shownChanged();
  void filterChanged();
  void settingsChanged();

 private:
  void setFilter(HistoryFilter filter);
  void update();

  AppModel& model_;
  const SessionTitles& names_;
  RecordListModel records_;
  HistoryFilter filter_;
  bool includeOwn_ = false;
  bool shown_ = true;
  bool isStale_ = false;
  int totalCount_ = 0;
  HistoryClearing clearing_;
};

}  // namespace velmora
