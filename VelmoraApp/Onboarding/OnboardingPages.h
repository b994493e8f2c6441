// What the introduction says, page by page.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "BridgeModels/WireNames.h"
#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

BOOST_DEFINE_ENUM_CLASS(OnboardingStep, scope, permission, policy, connection)

inline constexpr std::size_t onboardingStepCount = enumCases<OnboardingStep>.size();

struct OnboardingPage {
  OnboardingStep step;
  std::string_view symbol;
  const char* title;  ///< English, as is the text; the context "OnboardingPages" has them in other languages.
  const char* text;   ///< Empty where there is something to choose instead.
};

/// One per step, in order.
const std::array<OnboardingPage, onboardingStepCount>& onboardingPages(GuidedTerminal terminal);

}  // namespace velmora
