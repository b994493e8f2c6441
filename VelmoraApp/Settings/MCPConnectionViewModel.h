// What connects MCP clients to this application, ready to be copied.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include "VelmoraApp/Platform/Desktop.h"
#include "VelmoraApp/Settings/ConnectionTest.h"
#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

namespace velmora {

/// For the main thread.
class MCPConnectionViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by SettingsViewModel")
  Q_PROPERTY(QString caption READ caption NOTIFY clientChanged)
  Q_PROPERTY(QString helperPath READ helperPath CONSTANT)
  Q_PROPERTY(bool helperMissing READ helperMissing CONSTANT)
  Q_PROPERTY(bool extended READ extended WRITE setExtended NOTIFY formChanged)
  Q_PROPERTY(QString configuration READ configuration NOTIFY formChanged)
  Q_PROPERTY(QString openClawConfiguration READ openClawConfiguration NOTIFY formChanged)
  Q_PROPERTY(QString openClawCommands READ openClawCommands NOTIFY formChanged)
  Q_PROPERTY(QStringList clientNames READ clientNames CONSTANT)
  Q_PROPERTY(int clientIndex READ clientIndex WRITE setClientIndex NOTIFY clientChanged)
  Q_PROPERTY(QString clientPlace READ clientPlace NOTIFY clientChanged)
  Q_PROPERTY(QString clientSnippet READ clientSnippet NOTIFY clientChanged)
  Q_PROPERTY(velmora::ConnectionTest* test READ test CONSTANT)

 public:
  explicit MCPConnectionViewModel(const GuideContext& context) : context_(context) {}

  QString caption() const;
  QString helperPath() const;
  bool helperMissing() const { return !context_.helperIsThere; }
  bool extended() const { return connection_.form == ToolForm::extended; }
  void setExtended(bool extended);  ///< Which form of the tools the texts below ask for.
  QString configuration() const;
  QString openClawConfiguration() const;
  QString openClawCommands() const;  ///< Empty where they cannot ask for the form.

  QStringList clientNames() const;  ///< Of all whose snippet is known.
  int clientIndex() const { return clientIndex_; }
  void setClientIndex(int index);
  QString clientPlace() const;  ///< A sentence that says what to do with the snippet.
  QString clientSnippet() const;

  ConnectionTest* test() { return &test_; }

 Q_SIGNALS:
  void formChanged();
  void clientChanged();

 private:
  const GuideContext context_;
  MCPConnectionConfiguration connection_{context_.helperPath};
  int clientIndex_ = 0;
  ConnectionTest test_{QString::fromStdString(context_.helperPath)};
};

}  // namespace velmora
