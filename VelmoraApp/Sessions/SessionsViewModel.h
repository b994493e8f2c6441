// The known sessions, which of them are listed, and what the user may do with each.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/Sessions/SessionListModel.h"

namespace velmora {

/// For the main thread.
class SessionsViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(velmora::SessionListModel* sessions READ sessions CONSTANT)
  Q_PROPERTY(int count READ count NOTIFY countChanged)
  Q_PROPERTY(bool includeBusy READ includeBusy WRITE setIncludeBusy NOTIFY filterChanged)
  Q_PROPERTY(bool includeReadOnly READ includeReadOnly WRITE setIncludeReadOnly NOTIFY filterChanged)
  Q_PROPERTY(QStringList permissions READ permissions CONSTANT)
  Q_PROPERTY(QStringList permissionCaptions READ permissionCaptions NOTIFY countChanged)
  Q_PROPERTY(QString permissionsText READ permissionsText NOTIFY countChanged)
  Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY countChanged)
  Q_PROPERTY(QString emptyText READ emptyText NOTIFY countChanged)
  Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
  Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

 public:
  explicit SessionsViewModel(AppModel& model);

  SessionListModel* sessions() { return &sessions_; }
  int count() const { return sessions_.rowCount(); }
  bool includeBusy() const { return includeBusy_; }
  void setIncludeBusy(bool include);
  bool includeReadOnly() const { return includeReadOnly_; }
  void setIncludeReadOnly(bool include);
  QStringList permissions() const;
  QStringList permissionCaptions() const;  ///< What each of them lets an agent do.
  QString permissionsText() const;         ///< What a permission can do, and what it cannot.
  QString emptyTitle() const { return tr("No Terminal sessions"); }
  QString emptyText() const;  ///< What to do when no session is listed.
  bool isLoading() const { return model_.isRefreshing(); }
  QString problem() const { return problem_.text(); }  ///< Why the last action failed; empty when it did not.

  /// Both ignore ids and rows of `permissions` that do not exist.
  Q_INVOKABLE void setPermission(const QString& sessionId, int row);
  Q_INVOKABLE void focus(const QString& sessionId);
  Q_INVOKABLE void refresh();
  Q_INVOKABLE void dismissProblem();

 Q_SIGNALS:
  void countChanged();
  void filterChanged();
  void isLoadingChanged();
  void problemChanged();

 private:
  void update();
  void fail(const Problem& problem);

  AppModel& model_;
  SessionListModel sessions_;
  bool includeBusy_ = true;
  bool includeReadOnly_ = true;
  Problem problem_;
};

}  // namespace velmora
