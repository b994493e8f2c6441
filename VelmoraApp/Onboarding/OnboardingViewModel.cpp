#include "VelmoraApp/Onboarding/OnboardingViewModel.h"

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Settings/SessionPolicyTexts.h"

namespace velmora {

OnboardingViewModel::OnboardingViewModel(AppModel& model, FirstRunController& firstRun,
                                         GuidedTerminal terminal)
    : model_(model), firstRun_(firstRun), terminal_(terminal) {
  connect(&firstRun_, &FirstRunController::needsOnboardingChanged, this, &OnboardingViewModel::neededChanged);
}

QString OnboardingViewModel::progress() const {
  return QString("Step %1 of %2").arg(stepIndex() + 1).arg(stepCount());
}

QString OnboardingViewModel::symbol() const { return velmora::text(page().symbol); }

QString OnboardingViewModel::title() const { return velmora::text(page().title); }

QString OnboardingViewModel::text() const { return velmora::text(page().text); }

QStringList OnboardingViewModel::policies() const { return sessionPolicyLabels(); }

QStringList OnboardingViewModel::policyCaptions() const { return sessionPolicyCaptions(); }

void OnboardingViewModel::setPolicyIndex(int index) {
  policy_ = sessionPolicyAt(index).value_or(policy_);
  Q_EMIT policyChanged();  // even if nothing changed, so that the buttons show the choice again
}

QString OnboardingViewModel::forwardText() const { return step_ == Step::connection ? "Finish" : "Continue"; }

void OnboardingViewModel::next() {
  if (step_ != Step::connection) show(static_cast<Step>(stepIndex() + 1));
}

void OnboardingViewModel::back() {
  if (step_ != Step::scope) show(static_cast<Step>(stepIndex() - 1));
}

void OnboardingViewModel::forward() {
  if (step_ == Step::connection) return complete();
  next();
}

void OnboardingViewModel::show(Step step) {
  step_ = step;
  Q_EMIT stepChanged();
}

void OnboardingViewModel::complete() {
  if (!needed()) return;
  firstRun_.complete(policy_);
  model_.finishIntroduction(policy_);
}

}  // namespace velmora
