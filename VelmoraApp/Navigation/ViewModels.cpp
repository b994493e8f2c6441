#include "VelmoraApp/Navigation/ViewModels.h"

#include <QtCore/QMetaProperty>
#include <set>

namespace velmora {

namespace {

// Says of every property that it may have changed. QObject's own objectName is left out: its signal needs an
// argument, and no view shows it.
void announce(QObject* viewModel) {
  const auto* const meta = viewModel->metaObject();
  std::set<int> announced;
  for (int index = QObject::staticMetaObject.propertyCount(); index < meta->propertyCount(); ++index) {
    const auto property = meta->property(index);
    if (property.hasNotifySignal() && announced.insert(property.notifySignalIndex()).second)
      property.notifySignal().invoke(viewModel);
  }
}

}  // namespace

void ViewModels::retranslate(Language language) {
  settings_.general()->retranslate();
  help_.setLanguageIndex(static_cast<int>(language));
  const std::initializer_list<QObject*> speakers{&mainWindow_,
                                                 &otherBridge_,
                                                 dashboard_.now(),
                                                 &dashboard_,
                                                 &sessions_,
                                                 &history_,
                                                 history_.clearing(),
                                                 settings_.general(),
                                                 settings_.privacy(),
                                                 settings_.privacy()->clearing(),
                                                 settings_.connection(),
                                                 &onboarding_,
                                                 onboarding_.connection(),
                                                 settings_.general()->launchAtLogin(),
                                                 settings_.general()->updater(),
                                                 settings_.connection()->test(),
                                                 onboarding_.connection()->test()};
  // Twice: a picker that is given new labels forgets which of them is current.
  for (const int round : {1, 2}) {
    static_cast<void>(round);
    for (auto* speaker : speakers) announce(speaker);
  }
  navigation_.sections()->retranslate();
  dashboard_.clients()->repeatAll();
  sessions_.sessions()->repeatAll();
  history_.retranslate();
  recentRequests_.records()->repeatAll();
}

}  // namespace velmora
