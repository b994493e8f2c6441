// What the person asks for on the screens.
#include "BridgeHost/ProblemSentence.h"
#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

// The screens make their requests like any client, so they stand in the history too.
ClientIdentitySummary screens() { return {"Velmora.app", std::nullopt}; }

QString sentence(const StructuredError& error) {
  return text(error.message + " " + error.recoverySuggestion);
}

// Runs `work`; what it throws comes back as a sentence, empty when all went well.
template <class Work>
QString problemOf(const Work& work) {
  try {
    work();
    return {};
  } catch (...) {
    return text(problemSentence(std::current_exception()));
  }
}

struct Refreshed {
  ToolResult<SessionsPayload> sessions;
  ToolResult<StatusPayload> status;
};

}  // namespace

void AppModel::refreshAll() {
  if (!refresh_.enter()) return;
  Q_EMIT refreshingChanged();
  terminalWorker_.run(
      this,
      [this] {
        // The sessions first: the status counts those that the listing registered.
        auto sessions = coordinator().listSessions(options_.bridge.uuid(), screens(), {});
        return Refreshed{std::move(sessions), coordinator().status(options_.bridge.uuid(), screens())};
      },
      [this](Refreshed refreshed) {
        if (refreshed.sessions.ok) {
          publish(std::move(refreshed.sessions.data->sessions));
        } else if (refreshed.sessions.error->code == ErrorCode::terminalNotRunning) {
          publish(std::vector<TerminalSession>());
        } else {
          Q_EMIT sessionActionFailed(sentence(*refreshed.sessions.error));
        }
        if (refreshed.status.ok) publish(std::move(refreshed.status.data->status));
        fetchRecords();
        fetchSettings();
        const bool again = refresh_.leave();
        Q_EMIT refreshingChanged();
        if (again) refreshAll();
      });
}

void AppModel::setPaused(bool paused) {
  coordinator().setPaused(paused);  // only a flag: nothing to wait for
  publish(status_);
  poll();
}

void AppModel::setPermission(SessionPermission permission, const Uuid& sessionId) {
  using Outcome = std::pair<std::optional<TerminalSession>, QString>;
  fileWorker_.run(
      this,
      [this, permission, sessionId] {
        Outcome outcome;
        outcome.second =
            problemOf([&] { outcome.first = coordinator().permissionService().set(permission, sessionId); });
        return outcome;
      },
      [this, sessionId](const Outcome& outcome) {
        if (outcome.first) {
          // Shown before the refresh, which a hung terminal may hold up.
          auto sessions = sessions_;
          for (auto& session : sessions) {
            if (session.sessionId == sessionId) session.permission = outcome.first->permission;
          }
          publish(std::move(sessions));
        } else {
          Q_EMIT sessionActionFailed(outcome.second);
        }
        refreshAll();
      });
}

void AppModel::focus(const Uuid& sessionId) {
  terminalWorker_.run(
      this,
      [this, sessionId] {
        return coordinator().focusSession(options_.bridge.uuid(), screens(), {sessionId}).error;
      },
      [this](const std::optional<StructuredError>& error) {
        if (error) Q_EMIT sessionActionFailed(sentence(*error));
        refreshAll();
      });
}

void AppModel::updateSettings(const PrivacyRetentionSettings& settings) {
  changeSettings([settings] { return settings; },
                 [this](const QString& problem) { Q_EMIT settingsNotSaved(problem); });
}

void AppModel::adoptSessionPolicy(SessionPolicy policy) {
  changeSettings(
      [this, policy] {
        coordinator().setSessionPolicy(policy);
        auto settings = coordinator().settingsStore().load();  // what cannot be read is not replaced
        settings.sessionPolicy = policy;
        return settings;
      },
      [this](const QString& problem) { addProblem("The session policy could not be saved. " + problem); });
}

// `changed` makes the new settings where they are saved, after all that was asked for before.
void AppModel::changeSettings(std::function<PrivacyRetentionSettings()> changed,
                              std::function<void(const QString& problem)> failed) {
  ++savesUnderWay_;
  using Outcome = std::pair<std::optional<PrivacyRetentionSettings>, QString>;
  fileWorker_.run(
      this,
      [this, changed = std::move(changed)] {
        Outcome outcome;
        auto& core = coordinator();
        outcome.second = problemOf([&] {
          core.settingsStore().save(changed());
          const auto saved = core.settingsStore().current();
          outcome.first = saved;
          core.setSessionPolicy(saved.sessionPolicy);
          core.recorder().scrub(core.historyStore(), saved);
        });
        return outcome;
      },
      [this, failed = std::move(failed)](const Outcome& outcome) {
        // Only the last of several counts: the screens already show what it will save.
        if (--savesUnderWay_ == 0 && outcome.first) publish(*outcome.first);
        if (!outcome.second.isEmpty()) failed(outcome.second);
        fetchRecords();
      });
}

void AppModel::saveSettingsFromUI(PrivacyRetentionSettings settings) {
  settings.normalize();
  publish(settings);
  updateSettings(settings);
}

void AppModel::clearHistory() {
  fileWorker_.run(
      this, [this] { return problemOf([this] { coordinator().clearHistory(); }); },
      [this](const QString& problem) {
        if (!problem.isEmpty()) Q_EMIT historyNotCleared(problem);
        publish(std::vector<MCPRequestRecord>());
        fetchRecords();
      });
}

}  // namespace velmora
