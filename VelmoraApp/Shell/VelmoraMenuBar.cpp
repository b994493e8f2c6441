#include "VelmoraApp/Shell/VelmoraMenuBar.h"

namespace velmora {

VelmoraMenuBar::VelmoraMenuBar(MenuBarViewModel& viewModel)
    : viewModel_(viewModel),
      state_(menu_.addAction(QString())),
      clients_(menu_.addAction(QString())),
      sessions_(menu_.addAction(QString())),
      error_(menu_.addAction(QString())) {
  menu_.addSeparator();
  pause_ = menu_.addAction(QString());
  connect(pause_, &QAction::triggered, &viewModel_, &MenuBarViewModel::togglePause);
  menu_.addSeparator();
  connect(menu_.addAction("Open Velmora"), &QAction::triggered, this, &VelmoraMenuBar::openRequested);
  addPermissionPanes();
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger) Q_EMIT openRequested();
  });
  connect(&viewModel_, &MenuBarViewModel::changed, this, &VelmoraMenuBar::update);
  icon_.setToolTip("Velmora");
  icon_.setContextMenu(&menu_);
  update();
  icon_.show();
}

void VelmoraMenuBar::addPermissionPanes() {
  auto* panes = menu_.addMenu("Open Permission Settings");
  for (const auto& row : viewModel_.permissions()) {
    if (!row.link) continue;
    connect(panes->addAction(row.title), &QAction::triggered, this,
            [this, link = *row.link] { viewModel_.openPane(link); });
  }
  if (!panes->isEmpty()) return;
  panes->addAction(viewModel_.terminalName() + " needs no permission")->setEnabled(false);
}

void VelmoraMenuBar::update() {
  state_->setText(viewModel_.stateText());
  clients_->setText(viewModel_.clientsText());
  sessions_->setText(viewModel_.sessionsText());
  for (auto* figure : {clients_, sessions_}) figure->setVisible(!viewModel_.servesElsewhere());
  error_->setText(viewModel_.errorText());
  error_->setVisible(!viewModel_.errorText().isEmpty());
  pause_->setText(viewModel_.pauseText());
  pause_->setVisible(viewModel_.canPause());
  if (symbol_ == viewModel_.symbol()) return;
  symbol_ = viewModel_.symbol();
  QIcon icon(":/velmora/icons/" + symbol_ + ".svg");
  icon.setIsMask(true);  // drawn in the menu bar's own colour where the system does so
  icon_.setIcon(icon);
}

}  // namespace velmora
