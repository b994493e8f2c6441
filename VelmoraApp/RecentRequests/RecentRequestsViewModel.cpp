#include "VelmoraApp/RecentRequests/RecentRequestsViewModel.h"

namespace velmora {

RecentRequestsViewModel::RecentRequestsViewModel(AppModel& model) : model_(model), records_(model.clock()) {
  connect(&model_, &AppModel::recordsChanged, this, &RecentRequestsViewModel::update);
  connect(&model_, &AppModel::sessionsChanged, this, [this] { records_.nameTargets(model_.sessions()); });
  records_.nameTargets(model_.sessions());
  update();
}

void RecentRequestsViewModel::update() {
  records_.showRecords(model_.records(), most);
  Q_EMIT countChanged();
}

}  // namespace velmora
