#include "VelmoraApp/Shell/VelmoraMenuBar.h"

namespace velmora {

VelmoraMenuBar::VelmoraMenuBar(MenuBarViewModel& viewModel, Desktop& desktop)
    : viewModel_(viewModel),
      state_(menu_.addAction(QString())),
      clients_(menu_.addAction(QString())),
      sessions_(menu_.addAction(QString())),
      error_(menu_.addAction(QString())) {
  menu_.addSeparator();
  pause_ = menu_.addAction(QString());
  connect(pause_, &QAction::triggered, &viewModel_, &MenuBarViewModel::togglePause);
  menu_.addSeparator();
  open_ = menu_.addAction(QString());
  connect(open_, &QAction::triggered, this, &VelmoraMenuBar::openRequested);
  panes_ = menu_.addMenu(QString());
  connect(&viewModel_, &MenuBarViewModel::changed, this, &VelmoraMenuBar::update);
  icon_ = desktop.makeTrayIcon({.menu = menu_, .openWindow = [this] { Q_EMIT openRequested(); }});
  retranslate();
}

void VelmoraMenuBar::retranslate() {
  open_->setText(tr("Open Velmora"));
  panes_->setTitle(tr("Open Permission Settings"));
  showPermissionPanes();
  update();
}

void VelmoraMenuBar::showPermissionPanes() {
  panes_->clear();
  for (const auto& row : viewModel_.permissions()) {
    if (!row.link) continue;
    connect(panes_->addAction(row.title), &QAction::triggered, this,
            [this, link = *row.link] { viewModel_.openPane(link); });
  }
  if (!panes_->isEmpty()) return;
  panes_->addAction(tr("%1 needs no permission").arg(viewModel_.terminalName()))->setEnabled(false);
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
  icon_->setIcon(icon);
}

}  // namespace velmora
