#include "VelmoraApp/RecentRequests/SessionTitles.h"

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

SessionTitles::SessionTitles(AppModel& model) : model_(model) {
  connect(&model_, &AppModel::recordsChanged, this, &SessionTitles::update);
  connect(&model_, &AppModel::sessionsChanged, this, &SessionTitles::update);
  update();
}

// From the registry: a window that an agent has just opened is not on the screens' own list yet.
void SessionTitles::update() {
  bool isNew = false;
  for (const auto& session : model_.coordinator().registry().currentSessions()) {
    auto& name = known_[session.sessionId];
    if (name == session.reference()) continue;
    name = session.reference();
    isNew = true;
  }
  if (isNew) Q_EMIT changed();
}

MCPRequestRecord SessionTitles::named(MCPRequestRecord record) const {
  if (!record.sessionSnapshot || record.sessionSnapshot->title) return record;
  const auto known = known_.find(record.sessionSnapshot->sessionId);
  if (known != known_.end()) record.sessionSnapshot = known->second;
  return record;
}

QString sessionText(const MCPRequestRecord& record) {
  if (!record.sessionSnapshot) return {};
  const auto& [sessionId, title, tty] = *record.sessionSnapshot;
  if (!title || title->empty()) return tty ? text(*tty) : text(sessionId.toString());
  return tty ? text(*title + " (" + *tty + ")") : text(*title);
}

}  // namespace velmora
