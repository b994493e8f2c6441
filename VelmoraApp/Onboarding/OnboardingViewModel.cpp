#include "VelmoraApp/Onboarding/OnboardingViewModel.h"

#include <QtCore/QCoreApplication>
#include <algorithm>

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Settings/SessionPolicyTexts.h"

namespace velmora {

namespace {

// Enough to know it by.
QString shortTitle(const TerminalSession& session) {
  constexpr qsizetype most = 30;
  auto title = text(session.title.empty() ? session.tty : session.title);
  if (title.size() <= most) return title;
  title.truncate(most - 1);
  if (title.back().isHighSurrogate()) title.chop(1);
  return title + "…";
}

QString translatedPage(const char* text) { return QCoreApplication::translate("OnboardingPages", text); }

}  // namespace

OnboardingViewModel::OnboardingViewModel(AppModel& model, FirstRunController& firstRun,
                                         const GuideContext& context)
    : model_(model), firstRun_(firstRun), terminal_(context.terminal), connection_(context) {
  connect(this, &OnboardingViewModel::policyChanged, this, &OnboardingViewModel::foundChanged);
  connect(&model_, &AppModel::refreshingChanged, this, [this] {
    looked_ = looking_ && !model_.isRefreshing();
    if (looking_) Q_EMIT foundChanged();
  });
  connect(&firstRun_, &FirstRunController::needsOnboardingChanged, this, &OnboardingViewModel::neededChanged);
}

QString OnboardingViewModel::progress() const {
  return tr("Step %1 of %2").arg(stepIndex() + 1).arg(stepCount());
}

QString OnboardingViewModel::symbol() const { return velmora::text(page().symbol); }

QString OnboardingViewModel::title() const { return translatedPage(page().title); }

QString OnboardingViewModel::text() const { return translatedPage(page().text); }

QStringList OnboardingViewModel::policies() const { return sessionPolicyLabels(); }

QStringList OnboardingViewModel::policyCaptions() const { return sessionPolicyCaptions(); }

void OnboardingViewModel::setPolicyIndex(int index) {
  policy_ = sessionPolicyAt(index).value_or(policy_);
  Q_EMIT policyChanged();  // even if nothing changed, so that the buttons show the choice again
}

QString OnboardingViewModel::found() const {
  if (!looked_) return {};
  constexpr std::size_t most = 3;
  const auto& sessions = model_.sessions();
  if (sessions.empty()) return tr("No session is open now.");
  QStringList names;
  for (const auto& session : sessions) {
    if (static_cast<std::size_t>(names.size()) == most) break;
    names.append(shortTitle(session));
  }
  const auto others = sessions.size() - static_cast<std::size_t>(names.size());
  if (others > 0) names.append(tr("%1 more").arg(others));
  return tr("Open now: %1").arg(names.join(", "));
}

QString OnboardingViewModel::consequence() const {
  if (found().isEmpty() || model_.sessions().empty()) return {};
  if (policy_ == SessionPolicy::selective)
    return tr("Agents will type into none of these unless you allow it.");
  const auto& sessions = model_.sessions();
  const auto busy =
      std::count_if(sessions.begin(), sessions.end(), [](const auto& each) { return each.busy; });
  if (busy == 0) return tr("Agents will be able to type into all of these.");
  return tr("Agents will be able to type into all of these; into the busy ones (%1) when they are idle.")
      .arg(busy);
}

QString OnboardingViewModel::forwardText() const {
  return step_ == Step::connection ? tr("Finish") : tr("Continue");
}

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
  if (choosesPolicy() && terminal_ == GuidedTerminal::tmux) {
    looking_ = true;
    model_.refreshWhenLoaded();
  }
  Q_EMIT stepChanged();
}

void OnboardingViewModel::complete() {
  if (!needed()) return;
  firstRun_.complete(policy_);
  model_.finishIntroduction(policy_);
}

}  // namespace velmora
