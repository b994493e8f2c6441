// A terminal tab as the adapter reports it, and as the bridge knows it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/Date.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/StructuredError.h"
#include "BridgeModels/Uuid.h"

namespace velmora {

/// What a tab stays, whatever window it moves to and however often the bridge is started. The words are the
/// adapter's own; nobody else reads them.
struct TabIdentity {
  std::string terminal{};  ///< This run of the terminal: no other one, earlier or later, is called so.
  std::string tab{};       ///< The tab in it, never given to another one.

  bool operator==(const TabIdentity&) const = default;
  auto operator<=>(const TabIdentity&) const = default;
};
BOOST_DESCRIBE_STRUCT(TabIdentity, (), (terminal, tab))

/// One terminal tab as reported by the automation adapter.
struct TerminalTabSnapshot {
  std::string tty{};             ///< Device path, the stable key of a tab.
  std::int64_t windowId = 0;     ///< At most 53 bits, so that it survives every JSON reader.
  std::int64_t windowIndex = 0;  ///< Position in the terminal's window list, 1 = front-most.
  std::int64_t tabIndex = 0;     ///< Position in the window, from 1.
  std::string title{};
  bool busy = false;                      ///< A command is running in the tab.
  bool selected = false;                  ///< The selected tab of its window.
  std::optional<TabIdentity> identity{};  ///< Not in JSON. Absent when the adapter knows nothing that lasts.
  /// This bridge or an earlier one opened the tab, as the terminal remembers. Not in JSON.
  bool madeByBridge = false;
  /// No terminal of a user's has ever shown the tab, so no key that a user pressed went there. Not in JSON.
  bool neverShown = false;
  /// What the terminal's users call it, such as "%5" and "work:1.0". Not in JSON.
  std::vector<std::string> targets{};

  bool operator==(const TerminalTabSnapshot&) const = default;
};
BOOST_DESCRIBE_STRUCT(TerminalTabSnapshot, (), (tty, windowId, windowIndex, tabIndex, title, busy, selected))

/// What more can be said of a tab. All absent where the terminal does not tell.
struct TabDetails {
  std::optional<std::string> directory{};  ///< In which its foreground program works.
  std::optional<std::string> program{};    ///< In the foreground.
  std::optional<std::int64_t> columns{};
  std::optional<std::int64_t> rows{};
  std::optional<bool> alternateScreen{};  ///< A full-screen program draws.
  std::optional<bool> attached{};         ///< Somebody's terminal shows its session.

  bool operator==(const TabDetails&) const = default;
};

/// A tab that the session registry knows.
struct TerminalSession {
  Uuid sessionId{};           ///< The id handed to clients.
  Uuid registryGeneration{};  ///< The registry that issued the id.
  std::string tty{};
  std::int64_t windowId = 0;
  std::int64_t windowIndex = 0;
  std::int64_t tabIndex = 0;
  std::string title{};
  bool busy = false;
  bool selected = false;
  SessionValidity validity = SessionValidity::valid;
  SessionPermission permission = SessionPermission::managed;
  bool bridgeCreated = false;  ///< The bridge itself opened this tab.
  Date firstSeenAt{};
  Date lastSeenAt{};
  std::optional<Date> lastRequestAt{};  ///< Last tool call that named the session.
  bool neverShown = false;              ///< As the tab's, as is the next. Neither is in JSON.
  std::vector<std::string> targets{};
  // As in TabDetails; the registry keeps none of them.
  std::optional<std::string> directory{};
  std::optional<std::string> program{};
  std::optional<std::int64_t> columns{};
  std::optional<std::int64_t> rows{};
  std::optional<bool> alternateScreen{};
  std::optional<bool> attached{};
  std::optional<bool> createdByBridge{};

  TerminalSession() = default;
  TerminalSession(const Uuid& id, const Uuid& generation, const TerminalTabSnapshot& snapshot,
                  SessionPermission sessionPermission, bool madeByBridge, Date firstSeen, Date lastSeen,
                  std::optional<Date> lastRequest, SessionValidity sessionValidity)
      : sessionId(id),
        registryGeneration(generation),
        tty(snapshot.tty),
        windowId(snapshot.windowId),
        windowIndex(snapshot.windowIndex),
        tabIndex(snapshot.tabIndex),
        title(snapshot.title),
        busy(snapshot.busy),
        selected(snapshot.selected),
        validity(sessionValidity),
        permission(sessionPermission),
        bridgeCreated(madeByBridge),
        firstSeenAt(firstSeen),
        lastSeenAt(lastSeen),
        lastRequestAt(lastRequest),
        neverShown(snapshot.neverShown),
        targets(snapshot.targets) {}

  SessionReference reference() const { return {sessionId, title, tty}; }

  bool operator==(const TerminalSession&) const = default;
};
BOOST_DESCRIBE_STRUCT(TerminalSession, (),
                      (sessionId, registryGeneration, tty, windowId, windowIndex, tabIndex, title, busy,
                       selected, validity, permission, bridgeCreated, firstSeenAt, lastSeenAt, lastRequestAt,
                       directory, program, columns, rows, alternateScreen, attached, createdByBridge))
template <>
inline constexpr auto extendedMembers<TerminalSession> = std::tuple{
    &TerminalSession::directory,      &TerminalSession::program,         &TerminalSession::columns,
    &TerminalSession::rows,           &TerminalSession::alternateScreen, &TerminalSession::attached,
    &TerminalSession::createdByBridge};

}  // namespace velmora
