// What sessions are called, also those that closed: records keep only their ids.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <unordered_map>
#include <vector>

#include "VelmoraApp/AppModel/AppModel.h"

namespace velmora {

/// For the main thread. Make it before whatever shows records, which must find the names up to date.
class SessionTitles : public QObject {
  Q_OBJECT

 public:
  /// `model` must outlive it.
  explicit SessionTitles(AppModel& model);

  /// The record, with the title and the tty that its session had last.
  MCPRequestRecord named(MCPRequestRecord record) const;

 Q_SIGNALS:
  void changed();

 private:
  void update();

  AppModel& model_;
  std::unordered_map<Uuid, SessionReference> known_;
};

/// "title (tty)", or as much of it as the record holds, else the id; empty when it names no session.
QString sessionText(const MCPRequestRecord& record);

}  // namespace velmora
