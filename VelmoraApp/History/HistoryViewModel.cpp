#include "VelmoraApp/History/HistoryViewModel.h"

#include "BridgeModels/Text.h"
#include "VelmoraApp/AppModel/BridgeTexts.h"
#include "VelmoraApp/AppModel/ClientActivity.h"
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

// Also by its error's sentence in the shown language, which the bridge does not know.
bool isSought(const MCPRequestRecord& record, const HistoryFilter& filter) {
  if (HistoryQueryService::matches(record, filter)) return true;
  if (!record.error || filter.query.empty()) return false;
  auto others = filter;
  others.query.clear();
  return HistoryQueryService::matches(record, others) &&
         containsIgnoringCase(bridgeText(record.error->message).toStdString(), filter.query);
}

}  // namespace

HistoryViewModel::HistoryViewModel(AppModel& model, const SessionTitles& names)
    : model_(model), names_(names), records_(model.clock()), clearing_(model) {
  connect(&model_, &AppModel::recordsChanged, this, &HistoryViewModel::update);
  connect(&names_, &SessionTitles::changed, this, &HistoryViewModel::update);
  connect(&model_, &AppModel::settingsChanged, this, &HistoryViewModel::settingsChanged);
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

QStringList HistoryViewModel::toolLabels() const { return labels<ToolName>(tr("All tools")); }

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

QStringList HistoryViewModel::statusLabels() const { return labels<RequestStatus>(tr("All statuses")); }

void HistoryViewModel::setFilter(HistoryFilter filter) {
  if (filter == filter_) return;
  filter_ = std::move(filter);
  Q_EMIT filterChanged();
  update();
}

QString HistoryViewModel::notKept() const {
  const auto& settings = model_.settings();
  if (settings.storeCommandBody && settings.storeOutputPreview) return {};
  if (settings.storeCommandBody) return tr("Your settings keep no output.");
  if (settings.storeOutputPreview) return tr("Your settings keep no text of commands.");
  return tr("Your settings keep neither the text of commands nor output.");
}

void HistoryViewModel::setShown(bool shown) {
  if (shown == shown_) return;
  shown_ = shown;
  Q_EMIT shownChanged();
  if (shown_ && isStale_) update();
}

void HistoryViewModel::setIncludeOwn(bool include) {
  if (include == includeOwn_) return;
  includeOwn_ = include;
  Q_EMIT filterChanged();
  update();
}

void HistoryViewModel::retranslate() {
  update();
  records_.repeatAll();
}

// The names come first, so that the search finds what is shown.
void HistoryViewModel::update() {
  isStale_ = !shown_;
  if (isStale_) return;
  std::vector<MCPRequestRecord> all;
  all.reserve(model_.records().size());
  for (const auto& record : model_.records()) {
    if (includeOwn_ || !isOwnRequest(record)) all.push_back(names_.named(record));
  }
  totalCount_ = static_cast<int>(all.size());
  std::erase_if(all, [this](const auto& record) { return !isSought(record, filter_); });
  records_.showRecords(std::move(all));
  Q_EMIT countChanged();
}

}  // namespace velmora
