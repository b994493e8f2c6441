// What the style takes from macOS. Qt draws its palette from the system's appearance and says when it
// changes.

#include <QtCore/QEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <functional>
#include <utility>

#include "VelmoraApp/Style/StyleSetup.h"
#include "VelmoraApp/Style/SystemAppearance.h"

namespace velmora {

namespace {

class PaletteListener : public QObject {
 public:
  PaletteListener(QObject* parent, std::function<void()> tell) : QObject(parent), tell_(std::move(tell)) {
    qGuiApp->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::ApplicationPaletteChange) tell_();
    return QObject::eventFilter(watched, event);
  }

 private:
  std::function<void()> tell_;
};

}  // namespace

// Qt's own choice, Metal, is the right one here.
void chooseRenderer() {}

void SystemAppearance::follow() {
  const auto look = [this] {
    const auto palette = QGuiApplication::palette();
    setDark(palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness());
  };
  look();
  new PaletteListener(this, look);
}

}  // namespace velmora
