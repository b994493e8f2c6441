// Answers what users ask beside the window. Whatever takes power from agents is done for anyone who may reach
// the socket; what gives them more, once a word was typed back that the bridge showed on the user's terminal.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "BridgeCore/BridgeCoordinator.h"
#include "BridgeModels/Caller.h"
#include "BridgeModels/Json/JsonPart.h"
#include "LocalControl/PersonMessages.h"
#include "LocalControl/UserPresence.h"
#include "System/Log.h"

namespace velmora {

/// The other end of one connection, and what waits there for the user's word.
struct PersonPeer {
  struct Wish {
    std::filesystem::path terminal;
    std::string word;
    std::chrono::steady_clock::time_point until;
    std::function<std::string(const PersonCall<JsonMembers>& call)> grant;  ///< Does it; returns the answer.
  };

  pid_t process = 0;  ///< 0 when the system does not tell.
  std::optional<Wish> wish{};
  std::unique_ptr<RequestFeed::Watcher> watcher{};  ///< Since the first `events`.
  std::unique_ptr<WatchedTerminals::Hold> hold{};   ///< Since the first `watch`.
};

/// Stateless apart from its coordinator, which must outlive it; thread-safe. No request leaves a record in
/// the history; the log gets a line for each change.
class PersonRouter {
 public:
  /// `changed` hears, on the connection's thread, that something was changed.
  explicit PersonRouter(BridgeCoordinator& coordinator, Log log = {}, std::function<void()> changed = {},
                        UserPresence presence = {})
      : coordinator_(coordinator),
        log_(std::move(log)),
        changed_(std::move(changed)),
        presence_(std::move(presence)) {}

  /// The response to a request of `peer`'s, both as JSON text. Whatever fails with the request is a response
  /// with `ok` false; throws JsonDecodeError for text that is no request. One call at a time a peer.
  std::string answer(std::string_view request, const Caller& caller, PersonPeer& peer);

  /// For shutdown: nobody waits for the system's dialogue any more. Any thread.
  void cancel() noexcept { presence_.programs->cancel(); }

 private:
  using Call = PersonCall<JsonMembers>;

  std::string responseTo(const Call& call, const Caller& caller, PersonPeer& peer);
  PersonLimits limits();
  PersonSessions sessions(const Caller& caller);
  PersonHistory history(const HistoryInput& input, const Caller& caller);
  PersonEvents events(PersonPeer& peer);
  PersonWatch watch(PersonPeer& peer);
  std::string setPaused(const Call& call, bool paused);
  std::string resume(const Call& call, const Caller& caller, PersonPeer& peer);
  std::string permit(const Call& call, const Caller& caller, PersonPeer& peer);
  std::string changePolicy(const Call& call, const Caller& caller, PersonPeer& peer);
  std::string changeBusyInput(const Call& call, const Caller& caller, PersonPeer& peer);
  std::string confirm(const Call& call, const Caller& caller, PersonPeer& peer);
  std::string ask(const Call& call, const Caller& caller, PersonPeer& peer, const std::string& what,
                  std::function<std::string(const Call&)> grant);
  std::filesystem::path terminalOf(const PersonPeer& peer, const Caller& caller);
  TerminalSession find(const std::string& name, const Caller& caller);
  void tell(const std::string& change);

  BridgeCoordinator& coordinator_;
  const Log log_;
  const std::function<void()> changed_;
  const UserPresence presence_;
};

}  // namespace velmora
