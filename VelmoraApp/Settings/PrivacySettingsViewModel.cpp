#include "VelmoraApp/Settings/PrivacySettingsViewModel.h"

#include "VelmoraApp/Settings/SessionPolicyTexts.h"

namespace velmora {

PrivacySettingsViewModel::PrivacySettingsViewModel(AppModel& model)
    : model_(model), draft_(model.settings()), clearing_(model) {
  connect(&model_, &AppModel::settingsChanged, this, [this] {
    draft_ = model_.settings();
    Q_EMIT draftChanged();
  });
  connect(&model_, &AppModel::settingsNotSaved, this,
          [this](const QString& problem) { setProblem("The change could not be saved. " + problem); });
}

void PrivacySettingsViewModel::setPersistentHistoryEnabled(bool enabled) {
  auto draft = draft_;
  draft.persistentHistoryEnabled = enabled;
  save(draft);
}

void PrivacySettingsViewModel::setDeleteOnAppExit(bool deletes) {
  auto draft = draft_;
  draft.deleteOnAppExit = deletes;
  save(draft);
}

void PrivacySettingsViewModel::setRetentionDays(int days) {
  auto draft = draft_;
  draft.retentionDays = days;
  save(draft);
}

void PrivacySettingsViewModel::setMaximumRecordCount(int count) {
  auto draft = draft_;
  draft.maximumRecordCount = count;
  save(draft);
}

void PrivacySettingsViewModel::setStoreCommandBody(bool store) {
  setStored(&PrivacyRetentionSettings::storeCommandBody, store, StorageWarning::command);
}

void PrivacySettingsViewModel::setStoreOutputPreview(bool store) {
  setStored(&PrivacyRetentionSettings::storeOutputPreview, store, StorageWarning::output);
}

void PrivacySettingsViewModel::setOutputPreviewMaxCharacters(int characters) {
  auto draft = draft_;
  draft.outputPreviewMaxCharacters = characters;
  save(draft);
}

void PrivacySettingsViewModel::setAllowBusySessionInput(bool allow) {
  auto draft = draft_;
  draft.allowBusySessionInput = allow;
  save(draft);
}

void PrivacySettingsViewModel::setSessionPolicyIndex(int index) {
  const auto policy = sessionPolicyAt(index);
  if (!policy) return;
  auto draft = draft_;
  draft.sessionPolicy = *policy;
  save(draft);
}

QStringList PrivacySettingsViewModel::sessionPolicyLabels() const { return velmora::sessionPolicyLabels(); }

void PrivacySettingsViewModel::enableAfterWarning() {
  if (!warning_) return;
  auto draft = draft_;
  (*warning_ == StorageWarning::command ? draft.storeCommandBody : draft.storeOutputPreview) = true;
  setWarning(std::nullopt);
  save(draft);
}

void PrivacySettingsViewModel::cancelWarning() {
  setWarning(std::nullopt);
  Q_EMIT draftChanged();
}

void PrivacySettingsViewModel::dismissProblem() { setProblem({}); }

void PrivacySettingsViewModel::save(const PrivacyRetentionSettings& draft) {
  if (draft == draft_) return;
  dismissProblem();
  model_.saveSettingsFromUI(draft);
}

void PrivacySettingsViewModel::setStored(bool PrivacyRetentionSettings::*flag, bool store,
                                         StorageWarning warning) {
  if (store == draft_.*flag) return;
  if (store) {
    setWarning(warning);
    Q_EMIT draftChanged();  // the switch is back at off until the person has answered
    return;
  }
  auto draft = draft_;
  draft.*flag = false;
  save(draft);
}

void PrivacySettingsViewModel::setWarning(std::optional<StorageWarning> warning) {
  if (warning == warning_) return;
  warning_ = warning;
  Q_EMIT warningChanged();
}

void PrivacySettingsViewModel::setProblem(const QString& problem) {
  if (problem == problem_) return;
  problem_ = problem;
  Q_EMIT problemChanged();
}

}  // namespace velmora
