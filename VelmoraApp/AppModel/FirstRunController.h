// Decides whether the user still has to be introduced to the application, and remembers that it happened.
#pragma once

#include <QtCore/QObject>
#include <utility>

#include "BridgeModels/BridgeEnums.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Platform/UserDefaults.h"

namespace velmora {

/// For the main thread.
class FirstRunController : public QObject {
  Q_OBJECT

 public:
  /// `defaults` must outlive it.
  explicit FirstRunController(UserDefaults& defaults)
      : defaults_(defaults),
        needsOnboarding_(!defaults.boolean(userDefault::onboardingCompleted, /*absent=*/false)) {}

  bool needsOnboarding() const { return needsOnboarding_; }

  /// Writes the policy and that the introduction is over.
  void complete(SessionPolicy policy) {
    defaults_.set(userDefault::sessionPolicy, wireText(policy));
    defaults_.set(userDefault::onboardingCompleted, true);
    if (!std::exchange(needsOnboarding_, false)) return;
    Q_EMIT needsOnboardingChanged();
  }

 Q_SIGNALS:
  void needsOnboardingChanged();

 private:
  UserDefaults& defaults_;
  bool needsOnboarding_;
};

}  // namespace velmora
