# The screens. Their view models stand beside them.
set(VELMORA_QML_FILES
  Dashboard/ClientsCard.qml
  Dashboard/DashboardView.qml
  Dashboard/StatusFigure.qml
  Dashboard/StatusFigures.qml
  Dashboard/StatusRow.qml
  Dashboard/TerminalCard.qml
  History/HistoryView.qml
  Navigation/Main.qml
  Navigation/Sidebar.qml
  RecentRequests/RecentRequestsView.qml
  RecentRequests/RequestRow.qml
  RecentRequests/RequestText.qml
  Sessions/SessionColumns.qml
  Sessions/SessionRow.qml
  Sessions/SessionsView.qml)
