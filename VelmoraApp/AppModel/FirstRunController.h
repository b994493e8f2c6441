// Decides whether the person still has to be introduced to the application, and remembers that it happened.
#pragma once

#include <QtCore/QObject>

#include "BridgeModels/BridgeEnums.h"
#include "VelmoraApp/AppModel/UserDefaults.h"

namespace velmora {

/// For the main thread.
class FirstRunController : public QObject {
  Q_OBJECT

 public:
  /// `defaults` must outlive it.
  explicit FirstRunController(UserDefaults& defaults);

  bool needsOnboarding() const { return needsOnboarding_; }

  /// Writes the policy and that the introduction is over.
  void complete(SessionPolicy policy);

 Q_SIGNALS:
  void needsOnboardingChanged();

 private:
  UserDefaults& defaults_;
  bool needsOnboarding_;
};

}  // namespace velmora
