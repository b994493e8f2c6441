#include "VelmoraApp/Settings/Pasteboard.h"

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

namespace velmora {

void Pasteboard::copy(const QString& text) { QGuiApplication::clipboard()->setText(text); }

}  // namespace velmora
