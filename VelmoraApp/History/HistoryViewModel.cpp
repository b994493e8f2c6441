#include "VelmoraApp/History/HistoryViewModel.h"

#include <limits>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

// A picker's first entry means all; the cases follow in order.
template <class Enum>
QStringList labels(const QString& all) {
  return QStringList(all) + wireTexts<Enum>();
}

template <class Enum>
int labelIndex(const QString& name) {
  return static_cast<int>(wireTexts<Enum>().indexOf(name)) + 1;
}

template <class Enum>
QString labelled(int index) {
  return wireTexts<Enum>().value(index - 1);
}

}  // namespace

HistoryViewModel::HistoryViewModel(AppModel& model)
    : model_(model), records_(model.clock()), clearing_(model) {
  connect(&model_, &AppModel::recordsChanged, this, &HistoryViewModel::update);
  connect(&model_, &AppModel::sessionsChanged, this, [this] { records_.nameTargets(model_.sessions()); });
  records_.nameTargets(model_.sessions());
  update();
}

QString HistoryViewModel::query() const { return text(filter_.query); }

void HistoryViewModel::setQuery(const QString& query) {
  auto filter = filter_;
  filter.query = query.toStdString();
  setFilter(std::move(filter));
}

QString HistoryViewModel::tool() const { return filter_.tool ? wireText(*filter_.tool) : QString(); }

void HistoryViewModel::setTool(const QString& tool) {
  auto filter = filter_;
  filter.tool = fromWireText<ToolName>(tool);
  setFilter(std::move(filter));
}

int HistoryViewModel::toolIndex() const { return labelIndex<ToolName>(tool()); }

void HistoryViewModel::setToolIndex(int index) { setTool(labelled<ToolName>(index)); }

QStringList HistoryViewModel::toolLabels() const { return labels<ToolName>("All tools"); }

QString HistoryViewModel::status() const {
  return filter_.statuses.empty() ? QString() : wireText(*filter_.statuses.begin());
}

void HistoryViewModel::setStatus(const QString& status) {
  auto filter = filter_;
  filter.statuses.clear();
  if (const auto chosen = fromWireText<RequestStatus>(status)) filter.statuses.insert(*chosen);
  setFilter(std::move(filter));
}

int HistoryViewModel::statusIndex() const { return labelIndex<RequestStatus>(status()); }

void HistoryViewModel::setStatusIndex(int index) { setStatus(labelled<RequestStatus>(index)); }

QStringList HistoryViewModel::statusLabels() const { return labels<RequestStatus>("All statuses"); }

void HistoryViewModel::setFilter(HistoryFilter filter) {
  if (filter == filter_) return;
  filter_ = std::move(filter);
  Q_EMIT filterChanged();
  update();
}

void HistoryViewModel::update() {
  constexpr auto all = std::numeric_limits<std::size_t>::max();
  records_.showRecords(HistoryQueryService::filter(model_.records(), filter_), all);
  Q_EMIT countChanged();
}

}  // namespace velmora
