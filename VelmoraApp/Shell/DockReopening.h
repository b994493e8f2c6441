// The way back to the window from the Dock.
#pragma once

#include <QtCore/QObject>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>
#include <algorithm>
#include <functional>
#include <utility>

namespace velmora {

/// Opens the window when the application is activated while none of its windows is to be seen. A click on the
/// icon in the Dock, and a second start from the Finder, activate it, even when it is active already; the
/// system starts no second process that could wake this one. For the main thread.
class DockReopening : public QObject {
 public:
  explicit DockReopening(std::function<void()> open) {
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [open = std::move(open)](Qt::ApplicationState state) {
              const auto windows = QGuiApplication::topLevelWindows();
              if (state == Qt::ApplicationActive && std::ranges::none_of(windows, &QWindow::isVisible))
                open();
            });
  }
};

}  // namespace velmora
