// The records that travel on the channel for users. Frames and envelopes are those of the nine tools'
// channel; in place of a tool stands a verb.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BridgeModels/BridgeStatus.h"
#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "BridgeModels/TerminalSession.h"
#include "LocalControl/LocalControlMessages.h"

namespace velmora {

// What a user asks of the bridge, beside the window.
BOOST_DEFINE_ENUM_CLASS(PersonVerb, status, sessions, history, pause, resume, permit, policy, busyInput,
                        confirm, events, watch)

/// A request of a user's.
template <class Arguments>
using PersonCall = LocalControlCall<Arguments, PersonVerb>;
using PersonRequest = PersonCall<JSONObject>;

struct PermitInput {
  std::string session{};  ///< A session as the user writes it, see `SessionNames.h`.
  SessionPermission permission = SessionPermission::readOnly;

  bool operator==(const PermitInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(PermitInput, (), (session, permission))

struct PolicyInput {
  SessionPolicy policy = SessionPolicy::selective;

  bool operator==(const PolicyInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(PolicyInput, (), (policy))

struct BusyInputInput {
  bool allowed = false;
  std::optional<bool> own{};  ///< For the windows that agents opened; left out, off goes with `allowed`.

  bool operator==(const BusyInputInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(BusyInputInput, (), (allowed, own))

struct ConfirmInput {
  std::string word{};

  bool operator==(const ConfirmInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(ConfirmInput, (), (word))

/// The answer to a verb that would give agents more: the bridge has shown a word on the user's terminal, and
/// waits for `confirm` with it, on the same connection. What was asked is done and answered then.
struct PersonChallenge {
  std::string wordShownOn{};
  std::int64_t seconds = 0;  ///< How long the word counts.

  bool operator==(const PersonChallenge&) const = default;
};
BOOST_DESCRIBE_STRUCT(PersonChallenge, (), (wordShownOn, seconds))

struct HistoryInput {
  std::optional<Date> since{};
  std::optional<std::string>
      session{};  ///< As the user writes it; an id is also sought among those that ended.
  std::optional<ToolName> tool{};

  bool operator==(const HistoryInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(HistoryInput, (), (since, session, tool))

/// What holds for every session. The answer of the verbs that change it, which never wait for the terminal.
struct PersonLimits {
  bool paused = false;
  SessionPolicy sessionPolicy = SessionPolicy::safe;
  bool allowBusySessionInput = false;
  std::optional<bool> allowOwnBusySessionInput{};  ///< Only there when it is on.

  bool operator==(const PersonLimits&) const = default;
};
BOOST_DESCRIBE_STRUCT(PersonLimits, (),
                      (paused, sessionPolicy, allowBusySessionInput, allowOwnBusySessionInput))

/// The answer of `status`.
struct PersonStatus {
  BridgeStatus status{};
  PersonLimits limits{};

  bool operator==(const PersonStatus&) const = default;
};
BOOST_DESCRIBE_STRUCT(PersonStatus, (), (status, limits))

/// A session with what the terminal calls it. The answer of `permit`.
struct PersonSession {
  TerminalSession session{};
  std::vector<std::string> targets{};  ///< Such as "%5"; none where the terminal has no such names.

  bool operator==(const PersonSession&) const = default;
};
BOOST_DESCRIBE_STRUCT(PersonSession, (), (session, targets))

struct PersonSessions {
  std::vector<PersonSession> sessions{};

  bool operator==(const PersonSessions&) const = default;
};
BOOST_DESCRIBE_STRUCT(PersonSessions, (), (sessions))

struct PersonHistory {
  std::vector<MCPRequestRecord> records{};  ///< Newest first.
  bool more = false;                        ///< There are older ones that did not fit into the answer.

  bool operator==(const PersonHistory&) const = default;
};
BOOST_DESCRIBE_STRUCT(PersonHistory, (), (records, more))

/// The answer of `watch`: agents are refused the session on this terminal as long as the connection lives.
struct PersonWatch {
  std::string terminal{};

  bool operator==(const PersonWatch&) const = default;
};
BOOST_DESCRIBE_STRUCT(PersonWatch, (), (terminal))

/// The answer of `events`: what agents asked since the last one on the same connection.
struct PersonEvents {
  std::vector<MCPRequestRecord> requests{};  ///< In the order in which they ended.
  std::int64_t missed = 0;                   ///< So many came before them, faster than they were fetched.

  bool operator==(const PersonEvents&) const = default;
};
BOOST_DESCRIBE_STRUCT(PersonEvents, (), (requests, missed))

}  // namespace velmora
