// What the window says, in place of its sections, while another bridge of the user's serves.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

#include "VelmoraApp/AppModel/AppModel.h"

namespace velmora {

/// For the main thread.
class OtherBridgeViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(bool serves READ serves NOTIFY changed)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString text READ text NOTIFY changed)
  Q_PROPERTY(QString takeOverText READ takeOverText NOTIFY changed)
  Q_PROPERTY(bool isUnderWay READ isUnderWay NOTIFY changed)
  Q_PROPERTY(QString problem READ problem NOTIFY changed)

 public:
  explicit OtherBridgeViewModel(AppModel& model) : model_(model) {
    connect(&model_.serving(), &Serving::changed, this, &OtherBridgeViewModel::changed);
  }

  bool serves() const { return model_.serving().otherBridge().has_value(); }
  QString title() const;  ///< As much as is known of it.
  QString text() const;
  QString takeOverText() const;
  bool isUnderWay() const { return model_.serving().isUnderWay(); }
  QString problem() const;  ///< Why it could not be ended; empty otherwise.

  Q_INVOKABLE void takeOver() { model_.serving().takeOver(); }

 Q_SIGNALS:
  void changed();

 private:
  AppModel& model_;
};

}  // namespace velmora
