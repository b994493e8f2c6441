// Whether the line at a shell's prompt is empty, so that an agent's text is never joined to what the user has
// typed there and not yet submitted.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "BridgeModels/Date.h"
#include "System/Mutex.h"
#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "TerminalAutomation/Tmux/PaneDirectory.h"

namespace velmora {

/// The line in which a pane's cursor stands.
struct CursorLine {
  std::string left{};         ///< What stands before the cursor, blanks included.
  bool cursorInText = false;  ///< The cursor stands on a character.
  bool wrapped = false;       ///< It began in a row above.
  std::string above{};        ///< The full rows above, which it may continue: some shells wrap by themselves.

  bool operator==(const CursorLine&) const = default;
};

/// The line from what tmux says of `pane` for readCursorLine, without the guard's mark; nothing when the
/// cursor is no longer where the listing saw it.
std::optional<CursorLine> parseCursorLine(std::string_view output, const PaneRow& pane);

/// Remembers from listings where each pane's cursor stood at an empty line. The cursor elsewhere, or a key
/// pressed since, makes a doubt that a look at the line settles. What the bridge typed itself is no doubt,
/// and a prompt that cannot be known counts as empty. Thread-safe.
class PromptWatch {
 public:
  enum class Line { empty, typedIn, doubtful };

  explicit PromptWatch(Clock now) : now_(std::move(now)) {}

  Date now() const { return now_(); }

  /// A pane of a listing that was begun at `taken`. `idle`: its shell waits at its prompt.
  void see(const ArrangedPane& pane, bool idle, Date taken);

  /// Forgets what was not seen by the listing that was begun at `taken`.
  void forgetBefore(Date taken);

  /// The line of an idle pane, as far as it is known without a look at it.
  Line line(const PaneRow& pane) const;

  /// Settles a doubt: `typedIn` or `empty`.
  Line settle(const PaneRow& pane, const CursorLine& looked);

  /// What the server has to compare in the moment of typing. The cursor is left out while what the bridge
  /// typed last may still move it.
  IdleGuard guard(const PaneRow& pane) const;

  /// The bridge types now.
  void touch(const PaneRow& pane);

 private:
  using Key = std::tuple<std::int64_t, std::int64_t, pid_t>;  // server's start, pane, program
  struct Prompt {
    struct Place {
      std::int64_t line;  ///< Counted from the beginning of the history.
      std::int64_t column;
      bool operator==(const Place&) const = default;
    };

    Date seen{};  ///< By the latest listing; so are the next three.
    std::int64_t lastKey = 0;
    std::int64_t lastAttach = 0;
    std::int64_t lastActivity = 0;
    std::optional<Place> empty{};    ///< Where the cursor stood at the empty line.
    std::optional<Date> touched{};   ///< The bridge has typed; where that left the cursor is not known yet.
    std::int64_t knownActivity = 0;  ///< Until which `empty` and `touched` say who typed.
    std::optional<std::string> text{};                              ///< The prompt, if it was looked at.
    std::optional<std::pair<std::int64_t, std::string>> refused{};  ///< Line and text of the last refusal.
  };

  static Key keyOf(const PaneRow& pane) { return {pane.serverStart, pane.pane, pane.process}; }
  static Prompt::Place placeOf(const PaneRow& pane) {
    return {pane.historySize + pane.cursorRow, pane.cursorColumn};
  }
  bool typedLately(const Prompt& prompt) const;
  bool attachedJustNow(const Prompt& prompt) const;
  static bool looksTypedIn(const Prompt& prompt, const Prompt::Place& place, const CursorLine& looked);

  const Clock now_;
  mutable Mutex mutex_;
  std::map<Key, Prompt> prompts_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
