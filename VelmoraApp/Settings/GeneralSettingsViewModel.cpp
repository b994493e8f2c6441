#include "VelmoraApp/Settings/GeneralSettingsViewModel.h"

namespace velmora {

GeneralSettingsViewModel::GeneralSettingsViewModel(AppModel& model, GeneralSettingsSources sources)
    : model_(model),
      sources_(std::move(sources)),
      terminal_(sources_.desktop.guideContext().terminal),
      permissions_(permissionSettings(terminal_, model.status())) {
  connect(&sources_.menuBar, &MenuBarPreference::changed, this, &GeneralSettingsViewModel::menuBarChanged);
  connect(&model_, &AppModel::statusChanged, this, [this] {
    auto permissions = permissionSettings(terminal_, model_.status());
    if (permissions == permissions_) return;
    permissions_ = std::move(permissions);
    Q_EMIT permissionsChanged();
  });
}

QString GeneralSettingsViewModel::menuBarText() const {
  return terminal_ == GuidedTerminal::tmux ? "Show Velmora in the tray" : "Show Velmora in the menu bar";
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
