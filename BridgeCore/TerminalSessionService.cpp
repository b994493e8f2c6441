#include "BridgeCore/TerminalSessionService.h"

#include <algorithm>

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

TerminalSessionService::TerminalSessionService(TerminalAutomating& automation, SessionRegistry& registry,
                                               SessionPolicy policy, Clock now)
    : automation_(automation), registry_(registry), now_(std::move(now)), policy_(policy) {}

void TerminalSessionService::setPolicy(SessionPolicy policy) {
  const MutexLock lock(mutex_);
  policy_ = policy;
}

std::vector<TerminalSession> TerminalSessionService::list(const ListSessionsInput& input) {
  auto sessions = reconciled();
  std::erase_if(sessions, [&](const TerminalSession& session) {
    return (session.permission == SessionPermission::readOnly && !input.includeReadOnly) ||
           (session.busy && !input.includeBusy);
  });
  return sessions;
}

TerminalSession TerminalSessionService::active() {
  const auto sessions = reconciled();
  const auto selected =
      std::find_if(sessions.begin(), sessions.end(), [](const auto& s) { return s.selected; });
  if (selected == sessions.end()) throw catalogue::noSelectedTab();
  return *selected;
}

TerminalSession TerminalSessionService::create(const CreateSessionInput& input) {
  input.validate();
  const MutexLock order(listingOrder_);
  const auto snapshot = automation_.createWindow().get();
  return registry_.registerCreated(snapshot, now_());
}

TerminalSession TerminalSessionService::validate(const Uuid& sessionId) {
  const MutexLock order(listingOrder_);
  const auto listing = automation_.listSessions().get();
  return registry_.validate(sessionId, listing, now_());
}

TerminalSession TerminalSessionService::focus(const Uuid& sessionId,
                                              const SessionPermissionService& permissions) {
  auto session = validate(sessionId);
  if (!permissions.canFocus(session)) {
    throw catalogue::sessionNotAllowed(wireName(ToolName::focusSession), session.reference());
  }
  answerAbout(session, automation_.focus(session.tty, session.windowId));
  return session;
}

std::vector<TerminalSession> TerminalSessionService::reconciled() {
  const MutexLock order(listingOrder_);
  const auto listing = automation_.listSessions().get();
  return registry_.reconcile(listing, policy(), now_());
}

SessionPolicy TerminalSessionService::policy() const {
  const MutexLock lock(mutex_);
  return policy_;
}

}  // namespace velmora
