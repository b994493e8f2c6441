#include "VelmoraApp/Navigation/MainWindowViewModel.h"

#include <utility>

namespace velmora {

QString MainWindowViewModel::applicationName() const { return "Velmora"; }

QString MainWindowViewModel::applicationVersion() const { return VELMORA_VERSION; }

QString MainWindowViewModel::closeExplanation() const {
  const QString reason = !hasTrayPlace_ ? "This desktop has no tray to keep Velmora in"
                         : desktop_.guideContext().terminal == GuidedTerminal::tmux
                             ? "You switched Velmora's place in the tray off"
                             : "You switched Velmora's place in the menu bar off";
  return reason +
         ", so closing the window quits it. MCP clients cannot use the terminal until you start Velmora again.";
}

bool MainWindowViewModel::closeRequested() {
  if (hasTray_) return true;
  if (std::exchange(explained_, true)) {
    quit();
    return true;
  }
  setExplainsClosing(true);
  return false;
}

void MainWindowViewModel::confirmClosing() {
  setExplainsClosing(false);
  quit();
}

void MainWindowViewModel::cancelClosing() { setExplainsClosing(false); }

void MainWindowViewModel::quit() { Q_EMIT quitRequested(); }

void MainWindowViewModel::setExplainsClosing(bool explains) {
  if (explains == explainsClosing_) return;
  explainsClosing_ = explains;
  Q_EMIT explainsClosingChanged();
}

}  // namespace velmora
