#include "VelmoraApp/AppModel/FirstRunController.h"

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

FirstRunController::FirstRunController(UserDefaults& defaults)
    : defaults_(defaults),
      needsOnboarding_(!defaults.boolean(userDefault::onboardingCompleted, /*absent=*/false)) {}

void FirstRunController::complete(SessionPolicy policy) {
  defaults_.set(userDefault::sessionPolicy, wireText(policy));
  defaults_.set(userDefault::onboardingCompleted, true);
  if (!needsOnboarding_) return;
  needsOnboarding_ = false;
  Q_EMIT needsOnboardingChanged();
}

}  // namespace velmora
