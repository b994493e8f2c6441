#include "VelmoraApp/Settings/GeneralSettingsViewModel.h"

namespace velmora {

namespace {

QString socketOf(const PrivacyRetentionSettings& settings) {
  return QString::fromStdString(settings.tmuxSocket.value_or(""));
}

}  // namespace

GeneralSettingsViewModel::GeneralSettingsViewModel(AppModel& model, GeneralSettingsSources sources)
    : model_(model),
      sources_(std::move(sources)),
      terminal_(sources_.desktop.guideContext().terminal),
      tmuxSocket_(socketOf(model.settings())),
      permissions_(permissionSettings(terminal_, model.status())) {
  connect(&sources_.menuBar, &MenuBarPreference::changed, this, &GeneralSettingsViewModel::menuBarChanged);
  connect(&model_, &AppModel::settingsChanged, this, &GeneralSettingsViewModel::settingsChanged);
  connect(&model_, &AppModel::settingsChanged, this, &GeneralSettingsViewModel::updateTmuxSocket);
  connect(&model_, &AppModel::settingsNotSaved, this, [this](const Problem& problem, const QObject* page) {
    if (page != this) return;
    settingsProblem_ = problem;
    Q_EMIT settingsChanged();
  });
  connect(&sources_.language, &LanguagePreference::changed, this, &GeneralSettingsViewModel::languageChanged);
  connect(&model_, &AppModel::statusChanged, this, &GeneralSettingsViewModel::updatePermissions);
}

void GeneralSettingsViewModel::updatePermissions() {
  auto permissions = permissionSettings(terminal_, model_.status());
  if (permissions == permissions_) return;
  permissions_ = std::move(permissions);
  Q_EMIT permissionsChanged();
}

QStringList GeneralSettingsViewModel::languageLabels() const {
  QStringList labels{tr("As the system")};
  for (const auto& traits : languages) labels.append(text(traits.name));
  return labels;
}

int GeneralSettingsViewModel::languageIndex() const {
  const auto choice = sources_.language.choice();
  return choice ? static_cast<int>(*choice) + 1 : 0;
}

void GeneralSettingsViewModel::setLanguageIndex(int index) {
  if (index < 0 || index > static_cast<int>(languages.size())) return;
  sources_.language.setChoice(index == 0 ? std::nullopt : std::optional(static_cast<Language>(index - 1)));
}

QString GeneralSettingsViewModel::menuBarText() const {
  return terminal_ == GuidedTerminal::tmux ? tr("Show Velmora in the tray")
                                           : tr("Show Velmora in the menu bar");
}

bool GeneralSettingsViewModel::shellIntegration() const {
  return model_.settings().shellIntegration != ShellIntegrationChoice::off;
}

// A setting at its default is not stored.
void GeneralSettingsViewModel::setShellIntegration(bool automatic) {
  if (automatic == shellIntegration()) return;
  auto settings = model_.settings();
  settings.shellIntegration = automatic ? std::nullopt : std::optional(ShellIntegrationChoice::off);
  settingsProblem_ = {};
  model_.saveSettingsFromUI(settings, this);
}

void GeneralSettingsViewModel::setOwnBusyInput(bool allowed) {
  if (allowed == ownBusyInput()) return;
  auto settings = model_.settings();
  settings.allowOwnBusySessionInput = allowed ? std::optional(true) : std::nullopt;
  settingsProblem_ = {};
  model_.saveSettingsFromUI(settings, this);
}

void GeneralSettingsViewModel::updateTmuxSocket() {
  const auto socket = socketOf(model_.settings());
  if (socket == tmuxSocket_) return;
  tmuxSocket_ = socket;
  Q_EMIT tmuxSocketChanged();
}

void GeneralSettingsViewModel::setTmuxSocket(const QString& typed) {
  const auto socket = typed.trimmed();
  const bool isPath = socket.isEmpty() || socket.startsWith('/');
  settingsProblem_ =
      isPath ? Problem{} : Problem{QT_TRANSLATE_NOOP("Problem", "The path of a socket has to begin with /.")};
  Q_EMIT settingsChanged();
  if (!isPath) return;
  if (socket == tmuxSocket_) {
    Q_EMIT tmuxSocketChanged();  // shown again, without the blanks around it
    return;
  }
  auto settings = model_.settings();
  settings.tmuxSocket = socket.isEmpty() ? std::nullopt : std::optional(socket.toStdString());
  model_.saveSettingsFromUI(settings, this);
}

QVariantList GeneralSettingsViewModel::permissions() const {
  QVariantList rows;
  for (const auto& row : permissions_.rows) rows.append(QVariant::fromValue(row));
  return rows;
}

void GeneralSettingsViewModel::openPermission(int row) {
  if (row < 0 || row >= static_cast<int>(permissions_.rows.size())) return;
  const auto& link = permissions_.rows[static_cast<std::size_t>(row)].link;
  if (link) sources_.desktop.openSettingsPane(*link);
}

}  // namespace velmora
