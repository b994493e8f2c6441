// Clearing the history, which the user confirms first.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

#include "VelmoraApp/AppModel/AppModel.h"

namespace velmora {

/// For the main thread. Each screen that offers clearing has its own.
class HistoryClearing : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the view models")
  Q_PROPERTY(bool confirmClear READ confirmClear NOTIFY confirmClearChanged)
  Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

 public:
  explicit HistoryClearing(AppModel& model);

  bool confirmClear() const { return confirmClear_; }  ///< Whether the user is being asked.
  QString problem() const { return problem_.text(); }  ///< Why clearing failed; empty when it did not.

  Q_INVOKABLE void request();
  Q_INVOKABLE void confirm();
  Q_INVOKABLE void cancel();
  Q_INVOKABLE void dismissProblem();

 Q_SIGNALS:
  void confirmClearChanged();
  void problemChanged();

 private:
  void setConfirmClear(bool confirm);
  void setProblem(const Problem& problem);

  AppModel& model_;
  bool confirmClear_ = false;
  bool asked_ = false;  // a problem of another screen's clearing is not this one's
  Problem problem_;
};

}  // namespace velmora
