// What a state means to the user. A view model says it, the theme has a colour for it.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

namespace velmora::meaning {

Q_NAMESPACE
QML_NAMED_ELEMENT(Meaning)

// Unscoped: a property hands it to QML as an int, the only type that qmllint finds in another module.
// NOLINTNEXTLINE(readability-identifier-naming): QML reaches only names that begin with a capital
enum Meaning : int { Plain, Quiet, Positive, Caution, Danger };
Q_ENUM_NS(Meaning)

}  // namespace velmora::meaning

namespace velmora {
using meaning::Meaning;
}
