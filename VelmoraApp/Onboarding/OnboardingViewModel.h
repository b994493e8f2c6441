// The introduction, shown once: what Velmora does, and how to treat existing sessions.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/AppModel/FirstRunController.h"
#include "VelmoraApp/Onboarding/OnboardingPages.h"
#include "VelmoraApp/Settings/MCPConnectionViewModel.h"

namespace velmora {

/// For the main thread. At tmux, which asks the user for no permission, it shows the sessions that the choice
/// is about. Before the last step is completed nothing is written and the application does not
/// start.
class OnboardingViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(bool needed READ needed NOTIFY neededChanged)
  Q_PROPERTY(int stepIndex READ stepIndex NOTIFY stepChanged)
  Q_PROPERTY(int stepCount READ stepCount CONSTANT)
  Q_PROPERTY(QString progress READ progress NOTIFY stepChanged)
  Q_PROPERTY(QString symbol READ symbol NOTIFY stepChanged)
  Q_PROPERTY(QString title READ title NOTIFY stepChanged)
  Q_PROPERTY(QString text READ text NOTIFY stepChanged)
  Q_PROPERTY(bool choosesPolicy READ choosesPolicy NOTIFY stepChanged)
  Q_PROPERTY(QStringList policies READ policies NOTIFY policyChanged)
  Q_PROPERTY(QStringList policyCaptions READ policyCaptions NOTIFY policyChanged)
  Q_PROPERTY(int policyIndex READ policyIndex WRITE setPolicyIndex NOTIFY policyChanged)
  Q_PROPERTY(QString found READ found NOTIFY foundChanged)
  Q_PROPERTY(QString consequence READ consequence NOTIFY foundChanged)
  Q_PROPERTY(bool connects READ connects NOTIFY stepChanged)
  Q_PROPERTY(velmora::MCPConnectionViewModel* connection READ connection CONSTANT)
  Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY stepChanged)
  Q_PROPERTY(QString forwardText READ forwardText NOTIFY stepChanged)

 public:
  using Step = OnboardingStep;

  /// Both must outlive it.
  OnboardingViewModel(AppModel& model, FirstRunController& firstRun, const GuideContext& context);

  bool needed() const { return firstRun_.needsOnboarding(); }
  Step step() const { return step_; }
  SessionPolicy policy() const { return policy_; }

  int stepIndex() const { return static_cast<int>(step_); }
  int stepCount() const { return static_cast<int>(onboardingStepCount); }
  QString progress() const;  ///< "Step 1 of 4"
  QString symbol() const;
  QString title() const;
  QString text() const;
  bool choosesPolicy() const { return step_ == Step::policy; }
  QStringList policies() const;
  QStringList policyCaptions() const;  ///< What each of them means.
  int policyIndex() const { return static_cast<int>(policy_); }
  void setPolicyIndex(int index);  ///< Ignores what is no policy.
  QString found() const;           ///< The sessions that there are now; empty where that is not known.
  QString consequence() const;     ///< What the chosen policy means for them.
  bool connects() const { return step_ == Step::connection; }
  MCPConnectionViewModel* connection() { return &connection_; }
  bool canGoBack() const { return step_ != Step::scope; }
  QString forwardText() const;

  Q_INVOKABLE void next();     ///< To the following step, if there is one.
  Q_INVOKABLE void back();     ///< To the step before, if there is one.
  Q_INVOKABLE void forward();  ///< To the following step; after the last one the introduction is over.

 Q_SIGNALS:
  void neededChanged();
  void stepChanged();
  void policyChanged();
  void foundChanged();

 private:
  const OnboardingPage& page() const {
    return onboardingPages(terminal_).at(static_cast<std::size_t>(step_));
  }
  void show(Step step);
  void complete();

  AppModel& model_;
  FirstRunController& firstRun_;
  const GuidedTerminal terminal_;
  Step step_ = Step::scope;
  SessionPolicy policy_ = SessionPolicy::safe;
  bool looking_ = false;
  bool looked_ = false;  // what the model has are the sessions of now
  MCPConnectionViewModel connection_;
};

}  // namespace velmora
