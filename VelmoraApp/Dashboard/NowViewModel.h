// What an agent is doing at this moment, and what one did last.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <optional>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/RecentRequests/SessionTitles.h"
#include "VelmoraApp/Style/Meaning.h"

namespace velmora {

/// For the main thread. Leaves out what the screens ask for themselves. Texts are empty when there is nothing
/// to say.
class NowViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by DashboardViewModel")
  Q_PROPERTY(bool isActive READ isActive NOTIFY changed)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString detail READ detail NOTIFY changed)
  Q_PROPERTY(QString last READ last NOTIFY changed)
  Q_PROPERTY(QString lastProblem READ lastProblem NOTIFY changed)
  Q_PROPERTY(QString lastCommand READ lastCommand NOTIFY changed)
  Q_PROPERTY(int meaning READ meaning NOTIFY changed)
  Q_PROPERTY(int lastMeaning READ lastMeaning NOTIFY changed)

 public:
  /// Both must outlive it.
  NowViewModel(AppModel& model, const SessionTitles& names);

  bool isActive() const { return current_.has_value(); }  ///< A request is under way.
  QString title() const;
  QString detail() const;
  QString last() const;         ///< The last request that ended: who did what, and when.
  QString lastProblem() const;  ///< Why it came to nothing.
  QString lastCommand() const;  ///< What it typed, when the settings keep that.
  Meaning meaning() const;
  Meaning lastMeaning() const;

 Q_SIGNALS:
  void changed();

 private:
  void update();
  bool paused() const { return model_.status().mcpState == MCPState::paused; }

  AppModel& model_;
  const SessionTitles& names_;
  std::optional<MCPRequestRecord> current_;  // the newest, when several are under way
  int others_ = 0;
  std::optional<MCPRequestRecord> last_;
};

}  // namespace velmora
