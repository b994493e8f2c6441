#include "VelmoraApp/Onboarding/OnboardingPages.h"

namespace velmora {

namespace {

using Pages = std::array<OnboardingPage, onboardingStepCount>;

constexpr OnboardingPage policyPage{OnboardingStep::policy, "lock.shield",
                                    QT_TRANSLATE_NOOP("OnboardingPages", "Session policy"), ""};

constexpr OnboardingPage connectionPage{
    OnboardingStep::connection, "cable.connector",
    QT_TRANSLATE_NOOP("OnboardingPages", "Local MCP connection"),
    QT_TRANSLATE_NOOP(
        "OnboardingPages",
        "Configure your MCP client to launch the bundled velmora helper over stdio. No network port is opened.")};

constexpr Pages pagesForTerminalApp{
    {{OnboardingStep::scope, "terminal", QT_TRANSLATE_NOOP("OnboardingPages", "Velmora Bridge"),
      QT_TRANSLATE_NOOP(
          "OnboardingPages",
          "Commands run in Apple's Terminal.app. This app does not create a PTY, render a terminal, or inspect shell internals.")},
     {OnboardingStep::permission, "checkmark.shield",
      QT_TRANSLATE_NOOP("OnboardingPages", "Terminal automation"),
      QT_TRANSLATE_NOOP(
          "OnboardingPages",
          "macOS permission is used only to read official Terminal scripting properties and deliver commands to explicitly identified sessions.")},
     policyPage,
     connectionPage}};

constexpr Pages pagesForTmux{
    {{OnboardingStep::scope, "terminal", QT_TRANSLATE_NOOP("OnboardingPages", "Velmora Bridge"),
      QT_TRANSLATE_NOOP(
          "OnboardingPages",
          "Commands run in your own tmux sessions. This app does not create a PTY, replace your terminal, or inspect shell internals.")},
     {OnboardingStep::permission, "checkmark.shield", QT_TRANSLATE_NOOP("OnboardingPages", "tmux automation"),
      QT_TRANSLATE_NOOP(
          "OnboardingPages",
          "tmux needs no permission. It is used only to read its sessions and deliver commands to explicitly identified ones.")},
     policyPage,
     connectionPage}};

}  // namespace

const Pages& onboardingPages(GuidedTerminal terminal) {
  return terminal == GuidedTerminal::tmux ? pagesForTmux : pagesForTerminalApp;
}

}  // namespace velmora
