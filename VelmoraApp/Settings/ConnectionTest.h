// Whether the helper that MCP clients launch reaches this bridge: asked by launching it.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <chrono>

#include "VelmoraApp/Style/Meaning.h"

namespace velmora {

/// For the main thread, which never waits. Texts are empty before the first test.
class ConnectionTest : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by MCPConnectionViewModel")
  Q_PROPERTY(bool isUnderWay READ isUnderWay NOTIFY changed)
  Q_PROPERTY(QString result READ result NOTIFY changed)
  Q_PROPERTY(int meaning READ meaning NOTIFY changed)
  Q_PROPERTY(QString answer READ answer NOTIFY changed)

 public:
  /// A bridge whose terminal hangs answers within ten seconds.
  explicit ConnectionTest(QString helperPath, std::chrono::milliseconds patience = std::chrono::seconds(20));
  /// Ends a helper that is still running.
  ~ConnectionTest() override;

  bool isUnderWay() const { return process_.state() != QProcess::NotRunning; }
  QString result() const;  ///< A sentence.
  Meaning meaning() const;
  QString answer() const { return answer_; }  ///< What the helper printed.

  /// Does nothing while a test is under way.
  Q_INVOKABLE void run();

 Q_SIGNALS:
  void changed();

 private:
  enum class Outcome { none, answered, noAnswer, notStarted };

  void end(Outcome outcome);

  const QString helperPath_;
  QProcess process_;
  QTimer patience_;
  Outcome outcome_ = Outcome::none;
  QString answer_;
};

}  // namespace velmora
