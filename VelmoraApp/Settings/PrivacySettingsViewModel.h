// What is stored about requests, and what clients may do. Every change is saved at once.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <optional>
#include <type_traits>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/History/HistoryClearing.h"

namespace velmora {

/// What the user is warned of before it is stored.
enum class StorageWarning { command, output };

/// For the main thread. Shows the draft: what the user chose, even if it could not be saved.
class PrivacySettingsViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by SettingsViewModel")
  Q_PROPERTY(bool persistentHistoryEnabled READ persistentHistoryEnabled WRITE setPersistentHistoryEnabled
                 NOTIFY draftChanged)
  Q_PROPERTY(bool deleteOnAppExit READ deleteOnAppExit WRITE setDeleteOnAppExit NOTIFY draftChanged)
  Q_PROPERTY(QString historyCaption READ historyCaption NOTIFY draftChanged)
  Q_PROPERTY(QVariantMap retentionDaysRange READ retentionDaysRange CONSTANT)
  Q_PROPERTY(QVariantMap maximumRecordCountRange READ maximumRecordCountRange CONSTANT)
  Q_PROPERTY(QVariantMap outputPreviewMaxCharactersRange READ outputPreviewMaxCharactersRange CONSTANT)
  Q_PROPERTY(int retentionDays READ retentionDays WRITE setRetentionDays NOTIFY draftChanged)
  Q_PROPERTY(int maximumRecordCount READ maximumRecordCount WRITE setMaximumRecordCount NOTIFY draftChanged)
  Q_PROPERTY(bool storeCommandBody READ storeCommandBody WRITE setStoreCommandBody NOTIFY draftChanged)
  Q_PROPERTY(bool storeOutputPreview READ storeOutputPreview WRITE setStoreOutputPreview NOTIFY draftChanged)
  Q_PROPERTY(int outputPreviewMaxCharacters READ outputPreviewMaxCharacters WRITE
                 setOutputPreviewMaxCharacters NOTIFY draftChanged)
  Q_PROPERTY(bool allowBusySessionInput READ allowBusySessionInput WRITE setAllowBusySessionInput NOTIFY
                 draftChanged)
  Q_PROPERTY(int sessionPolicyIndex READ sessionPolicyIndex WRITE setSessionPolicyIndex NOTIFY draftChanged)
  Q_PROPERTY(QStringList sessionPolicyLabels READ sessionPolicyLabels NOTIFY draftChanged)
  Q_PROPERTY(QStringList sessionPolicyCaptions READ sessionPolicyCaptions NOTIFY draftChanged)
  Q_PROPERTY(bool restrictsKnownSessions READ restrictsKnownSessions NOTIFY knownSessionsChanged)
  Q_PROPERTY(QString restrictText READ restrictText NOTIFY knownSessionsChanged)
  Q_PROPERTY(bool warns READ warns NOTIFY warningChanged)
  Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)
  Q_PROPERTY(velmora::HistoryClearing* clearing READ clearing CONSTANT)

 public:
  explicit PrivacySettingsViewModel(AppModel& model);

  bool persistentHistoryEnabled() const { return draft_.persistentHistoryEnabled; }
  void setPersistentHistoryEnabled(bool enabled);
  bool deleteOnAppExit() const { return draft_.deleteOnAppExit; }
  void setDeleteOnAppExit(bool deletes);
  QString historyCaption() const;  ///< What the two together come to.
  // Each {minimum, maximum}, both inclusive.
  static QVariantMap retentionDaysRange();
  static QVariantMap maximumRecordCountRange();
  static QVariantMap outputPreviewMaxCharactersRange();
  int retentionDays() const { return static_cast<int>(draft_.retentionDays); }
  void setRetentionDays(int days);
  int maximumRecordCount() const { return static_cast<int>(draft_.maximumRecordCount); }
  void setMaximumRecordCount(int count);
  bool storeCommandBody() const { return draft_.storeCommandBody; }
  void setStoreCommandBody(bool store);  ///< Turning it on only asks.
  bool storeOutputPreview() const { return draft_.storeOutputPreview; }
  void setStoreOutputPreview(bool store);  ///< Turning it on only asks.
  int outputPreviewMaxCharacters() const { return static_cast<int>(draft_.outputPreviewMaxCharacters); }
  void setOutputPreviewMaxCharacters(int characters);
  bool allowBusySessionInput() const { return draft_.allowBusySessionInput; }
  void setAllowBusySessionInput(bool allow);
  int sessionPolicyIndex() const { return static_cast<int>(draft_.sessionPolicy); }
  void setSessionPolicyIndex(int index);
  QStringList sessionPolicyLabels() const;
  QStringList sessionPolicyCaptions() const;
  /// Whether there are sessions that were found before the policy became selective, and that it would
  /// restrict.
  bool restrictsKnownSessions() const;
  QString restrictText() const;  ///< "Make the 5 known sessions read-only now"
  Q_INVOKABLE void restrictKnownSessions() { model_.makeKnownSessionsReadOnly(); }

  const std::optional<StorageWarning>& warning() const { return warning_; }
  bool warns() const { return warning_.has_value(); }
  Q_INVOKABLE void enableAfterWarning();
  Q_INVOKABLE void cancelWarning();

  /// Why the last change made on this page was not saved; empty when it was.
  QString problem() const { return problem_.text(); }
  Q_INVOKABLE void dismissProblem();

  HistoryClearing* clearing() { return &clearing_; }

 Q_SIGNALS:
  void draftChanged();
  void knownSessionsChanged();
  void warningChanged();
  void problemChanged();

 private:
  template <class Value>
  void change(Value PrivacyRetentionSettings::*field, std::type_identity_t<Value> value);
  void changeStored(bool PrivacyRetentionSettings::*flag, bool store, StorageWarning warning);
  void setWarning(std::optional<StorageWarning> warning);
  void setProblem(const Problem& problem);

  AppModel& model_;
  PrivacyRetentionSettings draft_;
  std::optional<StorageWarning> warning_;
  Problem problem_;
  HistoryClearing clearing_;
};

}  // namespace velmora
