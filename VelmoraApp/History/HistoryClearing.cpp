#include "VelmoraApp/History/HistoryClearing.h"

namespace velmora {

HistoryClearing::HistoryClearing(AppModel& model) : model_(model) {
  connect(&model_, &AppModel::historyNotCleared, this, [this](const Problem& problem) {
    if (asked_) setProblem(problem);
  });
}

void HistoryClearing::request() { setConfirmClear(true); }

void HistoryClearing::confirm() {
  if (!confirmClear_) return;
  setConfirmClear(false);
  dismissProblem();
  asked_ = true;
  model_.clearHistory();
}

void HistoryClearing::cancel() { setConfirmClear(false); }

void HistoryClearing::dismissProblem() {
  asked_ = false;
  setProblem({});
}

void HistoryClearing::setConfirmClear(bool confirm) {
  if (confirm == confirmClear_) return;
  confirmClear_ = confirm;
  Q_EMIT confirmClearChanged();
}

void HistoryClearing::setProblem(const Problem& problem) {
  if (problem.text() == problem_.text()) return;
  problem_ = problem;
  Q_EMIT problemChanged();
}

}  // namespace velmora
