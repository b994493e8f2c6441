// The newest requests, for the dashboard.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/RecentRequests/RecordListModel.h"

namespace velmora {

/// For the main thread.
class RecentRequestsViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(velmora::RecordListModel* records READ records CONSTANT)
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  static constexpr std::size_t most = 5;

  explicit RecentRequestsViewModel(AppModel& model) : model_(model), records_(model.clock()) {
    connect(&model_, &AppModel::recordsChanged, this, &RecentRequestsViewModel::update);
    connect(&model_, &AppModel::sessionsChanged, this, [this] { records_.nameTargets(model_.sessions()); });
    records_.nameTargets(model_.sessions());
    update();
  }

  RecordListModel* records() { return &records_; }
  int count() const { return records_.rowCount(); }

 Q_SIGNALS:
  void countChanged();

 private:
  void update() {
    records_.showRecords(model_.records(), most);
    Q_EMIT countChanged();
  }

  AppModel& model_;
  RecordListModel records_;
};

}  // namespace velmora
