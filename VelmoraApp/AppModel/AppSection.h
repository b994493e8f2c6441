// The sections of the main window, in the order of the sidebar.
#pragma once

#include <array>
#include <string_view>

#include "BridgeModels/WireNames.h"

namespace velmora {

BOOST_DEFINE_ENUM_CLASS(AppSection, dashboard, sessions, history, settings, help)

struct AppSectionTraits {
  AppSection section;
  std::string_view title;
  std::string_view symbol;
};

inline constexpr auto appSections = std::to_array<AppSectionTraits>({
    {AppSection::dashboard, "Dashboard", "gauge"},
    {AppSection::sessions, "Sessions", "terminal"},
    {AppSection::history, "History", "clock.arrow.circlepath"},
    {AppSection::settings, "Settings", "gearshape"},
    {AppSection::help, "Help", "questionmark.circle"},
});

}  // namespace velmora
