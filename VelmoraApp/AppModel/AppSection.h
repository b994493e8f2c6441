// The sections of the main window, in the order of the sidebar.
#pragma once

#include <QtCore/QtGlobal>
#include <array>
#include <string_view>

#include "BridgeModels/WireNames.h"

namespace velmora {

BOOST_DEFINE_ENUM_CLASS(AppSection, dashboard, sessions, history, settings, help)

struct AppSectionTraits {
  AppSection section;
  const char* title;  ///< English; `sectionTitle` says it in the user's language.
  std::string_view symbol;
};

inline constexpr auto appSections = std::to_array<AppSectionTraits>({
    {AppSection::dashboard, QT_TRANSLATE_NOOP("AppSection", "Dashboard"), "gauge"},
    {AppSection::sessions, QT_TRANSLATE_NOOP("AppSection", "Sessions"), "terminal"},
    {AppSection::history, QT_TRANSLATE_NOOP("AppSection", "History"), "clock.arrow.circlepath"},
    {AppSection::settings, QT_TRANSLATE_NOOP("AppSection", "Settings"), "gearshape"},
    {AppSection::help, QT_TRANSLATE_NOOP("AppSection", "Help"), "questionmark.circle"},
});

}  // namespace velmora
