#include "VelmoraApp/Shell/MainWindow.h"

#include <QtQml/QQmlExtensionPlugin>
#include <QtQuick/QQuickWindow>
#include <stdexcept>

#include "VelmoraApp/Navigation/ViewModels.h"
#include "VelmoraApp/Style/StyleSetup.h"

Q_IMPORT_QML_PLUGIN(VelmoraPlugin)

namespace velmora {

MainWindow::~MainWindow() = default;

void MainWindow::show(const QByteArray& activationToken) {
  if (window_ == nullptr) load();
  if (!activationToken.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", activationToken);
  if (window_->visibility() == QWindow::Minimized || !window_->isVisible()) window_->showNormal();
  window_->raise();
  window_->requestActivate();
}

void MainWindow::retranslate() {
  if (engine_) engine_->retranslate();
}

void MainWindow::load() {
  engine_ = std::make_unique<QQmlApplicationEngine>();
  addModules(*engine_);
  engine_->setInitialProperties({{"viewModels", QVariant::fromValue(&viewModels_)}});
  engine_->load(QUrl("qrc:/qt/qml/Velmora/Main.qml"));
  if (!engine_->rootObjects().isEmpty())
    window_ = qobject_cast<QQuickWindow*>(engine_->rootObjects().first());
  if (window_ == nullptr) throw std::runtime_error("the window could not be made");
}

}  // namespace velmora
