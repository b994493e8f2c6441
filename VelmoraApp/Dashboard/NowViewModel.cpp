#include "VelmoraApp/Dashboard/NowViewModel.h"

#include "VelmoraApp/AppModel/BridgeTexts.h"
#include "VelmoraApp/AppModel/ClientActivity.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/RecentRequests/RequestTexts.h"

namespace velmora {

NowViewModel::NowViewModel(AppModel& model, const SessionTitles& names) : model_(model), names_(names) {
  connect(&model_, &AppModel::recordsChanged, this, &NowViewModel::update);
  connect(&names_, &SessionTitles::changed, this, &NowViewModel::update);
  connect(&model_, &AppModel::statusChanged, this, &NowViewModel::changed);
  update();
}

void NowViewModel::update() {
  current_.reset();
  last_.reset();
  others_ = -1;
  const auto& records = model_.records();
  for (auto record = records.rbegin(); record != records.rend(); ++record) {
    if (isOwnRequest(*record)) continue;
    const bool isUnderWay = record->status == RequestStatus::processing;
    if (isUnderWay) ++others_;
    auto& place = isUnderWay ? current_ : last_;
    if (!place) place = names_.named(*record);
  }
  Q_EMIT changed();
}

QString NowViewModel::title() const {
  if (current_) return deedText(*current_);
  return paused() ? tr("Changes are paused") : tr("No agent is at work");
}

QString NowViewModel::detail() const {
  if (!current_) return paused() ? tr("Agents may read, but change nothing.") : QString();
  const auto start = timeText(current_->receivedAt, model_.clock()());
  if (others_ == 0) return tr("since %1").arg(start);
  return tr("since %1, and %n more request(s)", nullptr, others_).arg(start);
}

QString NowViewModel::last() const {
  if (!last_) return current_ ? QString() : tr("no agent has called yet");
  const auto when = last_->completedAt.value_or(last_->receivedAt);
  return deedText(*last_) + ", " + timeText(when, model_.clock()());
}

QString NowViewModel::lastProblem() const {
  return last_ && last_->error ? bridgeText(last_->error->message) : QString();
}

QString NowViewModel::lastCommand() const { return last_ ? optionalText(last_->commandSummary) : QString(); }

Meaning NowViewModel::meaning() const {
  if (paused()) return Meaning::Caution;
  return isActive() ? Meaning::Positive : Meaning::Quiet;
}

Meaning NowViewModel::lastMeaning() const { return last_ ? statusMeaning(last_->status) : Meaning::Quiet; }

}  // namespace velmora
