// The settings' part of AppModel: how a change is made, saved and shown.
#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/AppModel/KnownSessions.h"
#include "VelmoraApp/AppModel/Problem.h"

namespace velmora {

namespace {

constexpr const char* historyNotScrubbed = QT_TRANSLATE_NOOP(
    "Problem", "The change is saved, but what it no longer allows could not be removed from the history.");

}  // namespace

/// What came of a change of the settings.
struct AppModel::ChangeOutcome {
  PrivacyRetentionSettings before;
  PrivacyRetentionSettings after;
  QString problem;  // empty when all went well
};

void AppModel::fetchSettings() {
  fileWorker_.run(
      this, [this] { return coordinator().settingsStore().current(); },
      [this](const PrivacyRetentionSettings& settings) {
        if (savesUnderWay_ == 0) publish(settings);
      });
}

void AppModel::publish(const PrivacyRetentionSettings& settings) {
  if (settings_ == settings) return;
  settings_ = settings;
  Q_EMIT settingsChanged();
}

void AppModel::updateSettings(const PrivacyRetentionSettings& settings, const QObject* page) {
  changeSettings([settings](BridgeCoordinator& core) { core.applySettings(settings); },
                 [this, page, wanted = settings](const ChangeOutcome& outcome) mutable {
                   wanted.normalize();
                   const auto* what = outcome.after == wanted
                                          ? historyNotScrubbed
                                          : QT_TRANSLATE_NOOP("Problem", "The change could not be saved.");
                   Q_EMIT settingsNotSaved({what, outcome.problem}, page);
                 });
}

void AppModel::finishIntroduction(SessionPolicy policy) {
  introduced_ = true;
  changeSettings(
      [policy](BridgeCoordinator& core) {
        meetKnownSessions(core, policy);
        core.holdPause(false);
        core.setPaused(core.pauseIsKept());
        core.adoptSessionPolicy(policy);
      },
      [this](const ChangeOutcome& outcome) {
        const auto* what = outcome.after == outcome.before
                               ? QT_TRANSLATE_NOOP("Problem", "The session policy could not be saved.")
                               : historyNotScrubbed;
        addProblem({what, outcome.problem});
      });
  start();
}

void AppModel::changeSettings(std::function<void(BridgeCoordinator& core)> change,
                              std::function<void(const ChangeOutcome& outcome)> failed) {
  ++savesUnderWay_;
  fileWorker_.run(
      this,
      [this, change = std::move(change)] {
        const auto& stored = coordinator().settingsStore();
        const auto before = stored.current();
        auto problem = problemOf([&] { change(coordinator()); });
        return ChangeOutcome{before, stored.current(), std::move(problem)};
      },
      [this, failed = std::move(failed)](const ChangeOutcome& outcome) {
        // They may be saved although the history could not be.
        const bool saved = outcome.problem.isEmpty() || outcome.after != outcome.before;
        // Only the last of several counts: the screens already show what it will save.
        if (--savesUnderWay_ == 0 && saved) publish(outcome.after);
        if (!outcome.problem.isEmpty()) failed(outcome);
        fetchRecords();
      });
}

void AppModel::saveSettingsFromUI(PrivacyRetentionSettings settings, const QObject* page) {
  settings.normalize();
  publish(settings);
  updateSettings(settings, page);
}

}  // namespace velmora
