#include "VelmoraApp/Settings/PrivacySettingsViewModel.h"

#include "VelmoraApp/Settings/SessionPolicyTexts.h"

namespace velmora {

namespace {

QVariantMap valuesOf(const IntegerRange& range) {
  return {{"minimum", static_cast<int>(range.minimum)}, {"maximum", static_cast<int>(range.maximum)}};
}

}  // namespace

PrivacySettingsViewModel::PrivacySettingsViewModel(AppModel& model)
    : model_(model), draft_(model.settings()), clearing_(model) {
  connect(&model_, &AppModel::settingsChanged, this, [this] {
    draft_ = model_.settings();
    Q_EMIT draftChanged();
  });
  connect(&model_, &AppModel::sessionsChanged, this, &PrivacySettingsViewModel::knownSessionsChanged);
  connect(this, &PrivacySettingsViewModel::draftChanged, this,
          &PrivacySettingsViewModel::knownSessionsChanged);
  connect(&model_, &AppModel::settingsNotSaved, this, [this](const Problem& problem, const QObject* page) {
    if (page == this) setProblem(problem);
  });
}

void PrivacySettingsViewModel::setPersistentHistoryEnabled(bool enabled) {
  change(&PrivacyRetentionSettings::persistentHistoryEnabled, enabled);
}

void PrivacySettingsViewModel::setDeleteOnAppExit(bool deletes) {
  change(&PrivacyRetentionSettings::deleteOnAppExit, deletes);
}

QString PrivacySettingsViewModel::historyCaption() const {
  if (!draft_.persistentHistoryEnabled) return tr("The history is kept in memory only, until Velmora ends.");
  if (draft_.deleteOnAppExit)
    return tr("The history is on disk while Velmora runs, and deleted when it ends.");
  return tr("The history stays on disk when Velmora ends.");
}

QVariantMap PrivacySettingsViewModel::retentionDaysRange() {
  return valuesOf(PrivacyRetentionSettings::retentionDaysRange);
}

QVariantMap PrivacySettingsViewModel::maximumRecordCountRange() {
  return valuesOf(PrivacyRetentionSettings::maximumRecordCountRange);
}

QVariantMap PrivacySettingsViewModel::outputPreviewMaxCharactersRange() {
  return valuesOf(PrivacyRetentionSettings::outputPreviewMaxCharactersRange);
}

void PrivacySettingsViewModel::setRetentionDays(int days) {
  change(&PrivacyRetentionSettings::retentionDays, days);
}

void PrivacySettingsViewModel::setMaximumRecordCount(int count) {
  change(&PrivacyRetentionSettings::maximumRecordCount, count);
}

void PrivacySettingsViewModel::setStoreCommandBody(bool store) {
  changeStored(&PrivacyRetentionSettings::storeCommandBody, store, StorageWarning::command);
}

void PrivacySettingsViewModel::setStoreOutputPreview(bool store) {
  changeStored(&PrivacyRetentionSettings::storeOutputPreview, store, StorageWarning::output);
}

void PrivacySettingsViewModel::setOutputPreviewMaxCharacters(int characters) {
  change(&PrivacyRetentionSettings::outputPreviewMaxCharacters, characters);
}

void PrivacySettingsViewModel::setAllowBusySessionInput(bool allow) {
  change(&PrivacyRetentionSettings::allowBusySessionInput, allow);
}

void PrivacySettingsViewModel::setSessionPolicyIndex(int index) {
  if (const auto policy = sessionPolicyAt(index)) change(&PrivacyRetentionSettings::sessionPolicy, *policy);
}

QStringList PrivacySettingsViewModel::sessionPolicyLabels() const { return velmora::sessionPolicyLabels(); }

QStringList PrivacySettingsViewModel::sessionPolicyCaptions() const {
  return velmora::sessionPolicyCaptions();
}

bool PrivacySettingsViewModel::restrictsKnownSessions() const {
  return draft_.sessionPolicy == SessionPolicy::selective && model_.knownSessionsToRestrict() > 0;
}

QString PrivacySettingsViewModel::restrictText() const {
  return tr("Make the %n known session(s) read-only now", nullptr, model_.knownSessionsToRestrict());
}

void PrivacySettingsViewModel::enableAfterWarning() {
  if (!warning_) return;
  const auto flag = *warning_ == StorageWarning::command ? &PrivacyRetentionSettings::storeCommandBody
                                                         : &PrivacyRetentionSettings::storeOutputPreview;
  setWarning(std::nullopt);
  change(flag, true);
}

void PrivacySettingsViewModel::cancelWarning() {
  setWarning(std::nullopt);
  Q_EMIT draftChanged();
}

void PrivacySettingsViewModel::dismissProblem() { setProblem({}); }

template <class Value>
void PrivacySettingsViewModel::change(Value PrivacyRetentionSettings::*field,
                                      std::type_identity_t<Value> value) {
  if (draft_.*field == value) return;
  auto draft = draft_;
  draft.*field = value;
  dismissProblem();
  model_.saveSettingsFromUI(draft, this);
}

void PrivacySettingsViewModel::changeStored(bool PrivacyRetentionSettings::*flag, bool store,
                                            StorageWarning warning) {
  if (!store || draft_.*flag) return change(flag, store);
  setWarning(warning);
  Q_EMIT draftChanged();  // the switch is back at off until the user has answered
}

void PrivacySettingsViewModel::setWarning(std::optional<StorageWarning> warning) {
  if (warning == warning_) return;
  warning_ = warning;
  Q_EMIT warningChanged();
}

void PrivacySettingsViewModel::setProblem(const Problem& problem) {
  if (problem.text() == problem_.text()) return;
  problem_ = problem;
  Q_EMIT problemChanged();
}

}  // namespace velmora
