#include "VelmoraApp/Navigation/MainWindowViewModel.h"

namespace velmora {

QString MainWindowViewModel::applicationName() const { return "Velmora"; }

QString MainWindowViewModel::applicationVersion() const { return VELMORA_VERSION; }

QString MainWindowViewModel::notices() const {
  const QString libraries =
      "Qt (LGPL-3.0), Boost (BSL-1.0), ICU (Unicode-3.0), GLib (LGPL-2.1), Pango (LGPL-2.1), cairo (LGPL-2.1), "
      "libpng (libpng-2.0), ncurses (X11), Phosphor Icons (MIT)";
  return tr("© 2026 The Velmora authors. Free software under the Apache License, Version 2.0.") + "\n\n" +
         tr("With the work of others, under their own licenses: %1.").arg(libraries);
}

QString MainWindowViewModel::closeExplanation() const {
  return hasTrayPlace_
             ? tr("You switched Velmora's place in the tray off, so closing the window quits it. MCP clients cannot use the terminal until you start Velmora again.")
             : tr("This desktop has no tray to keep Velmora in, so closing the window quits it. MCP clients cannot use the terminal until you start Velmora again.");
}

bool MainWindowViewModel::closeRequested() {
  if (hasTray_ || desktop_.hasDockIcon()) return true;
  if (explainsClosing_) {
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
