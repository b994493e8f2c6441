// The newest requests of clients, for the dashboard.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <algorithm>
#include <vector>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/AppModel/ClientActivity.h"
#include "VelmoraApp/RecentRequests/RecordListModel.h"
#include "VelmoraApp/RecentRequests/SessionTitles.h"

namespace velmora {

/// For the main thread. What the screens ask for themselves is left out.
class RecentRequestsViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(velmora::RecordListModel* records READ records CONSTANT)
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  static constexpr std::size_t most = 5;

  /// Both must outlive it.
  RecentRequestsViewModel(AppModel& model, const SessionTitles& names)
      : model_(model), names_(names), records_(model.clock()) {
    connect(&model_, &AppModel::recordsChanged, this, &RecentRequestsViewModel::update);
    connect(&names_, &SessionTitles::changed, this, &RecentRequestsViewModel::update);
    update();
  }

  RecordListModel* records() { return &records_; }
  int count() const { return records_.rowCount(); }

 Q_SIGNALS:
  void countChanged();

 private:
  void update() {
    std::vector<MCPRequestRecord> newest;
    const auto& all = model_.records();
    for (auto record = all.rbegin(); record != all.rend() && newest.size() < most; ++record) {
      if (!isOwnRequest(*record)) newest.push_back(names_.named(*record));
    }
    std::reverse(newest.begin(), newest.end());
    records_.showRecords(newest);
    Q_EMIT countChanged();
  }

  AppModel& model_;
  const SessionTitles& names_;
  RecordListModel records_;
};

}  // namespace velmora
