// tmux's answer to a listing: a line of the server, one a pane, one a client, fields parted by tabs.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// A pane of a window of a session. A window that several sessions show has a row for each.
struct PaneRow {
  // These four are the server's and the same for all.
  pid_t serverProcess = 0;
  std::int64_t serverStart = 0;  ///< Unix seconds.
  std::string version{};
  std::string host{};

  std::int64_t session = 0;  ///< The numbers of $1, @2 and %3.
  std::int64_t window = 0;
  std::int64_t pane = 0;
  std::int64_t windowNumber = 0;  ///< Of the window in its session, as in "work:1.0".
  std::int64_t paneNumber = 0;    ///< Of the pane in its window.
  std::string tty{};
  pid_t process = 0;  ///< The first process in the pane.
  bool dead = false;  ///< The program has ended, its text is kept.
  bool inputOff = false;
  bool synchronized = false;       ///< What is typed goes to the window's other panes too.
  bool applicationCursor = false;  ///< Cursor keys send ESC O rather than ESC [.
  bool active = false;
  bool made = false;  ///< The bridge made it, this run's or an earlier one.
  /// A terminal has shown the session, or others have, or had, a part in the window.
  bool shown = false;
  std::int64_t stackIndex = 0;       ///< Of the window in its session, 0 = current, 1 = last, ...
  std::int64_t sessionActivity = 0;  ///< Unix seconds.
  std::int64_t cursorColumn = 0;     ///< From 0, as the row, which counts from the top of the screen.
  std::int64_t cursorRow = 0;
  std::int64_t historySize = 0;  ///< Lines above the screen.
  std::string program{};         ///< In the foreground, with "?" for what is no plain character.
  // At most 256 code points each, well-formed, without marks that nobody sees.
  std::string sessionName{};
  std::string windowName{};
  std::string title{};

  bool operator==(const PaneRow&) const = default;
};

/// A terminal that shows a window.
struct ClientRow {
  std::int64_t activity = 0;  ///< Unix seconds of the last key.
  std::int64_t created = 0;
  std::int64_t session = 0;
  std::int64_t window = 0;
  std::int64_t pane = 0;  ///< The one that gets the keys.
  std::string name{};

  bool operator==(const ClientRow&) const = default;
};

/// A paste buffer.
struct BufferRow {
  std::int64_t created = 0;  ///< Unix seconds.
  std::string name{};        ///< With "?" for what is no plain character.

  bool operator==(const BufferRow&) const = default;
};

struct TmuxListing {
  std::vector<PaneRow> panes;
  std::vector<ClientRow> clients;
  std::vector<BufferRow> buffers{};
};

/// The name of the program in a pane's foreground, for a format. A process may call itself anything, also
/// with tabs, line ends and what would be a format: whatever is no plain character becomes "?".
inline constexpr std::string_view plainProgramName = "s/[^A-Za-z0-9._+-]/?/:pane_current_command";

/// The option of a pane by which a bridge knows later that a bridge made it.
inline constexpr std::string_view madeOption = "@velmora-made";

/// The formats of the lines: for display-message -p, and the values of `-F` for list-panes, list-clients and
/// list-buffers.
const std::string& serverRowFormat();
const std::string& paneRowFormat();
const std::string& clientRowFormat();
const std::string& bufferRowFormat();

/// The commands that print the server's line and one for each pane, or for each that has had the terminal
/// `tty`; that must be a plain path.
std::vector<std::string> paneListing(const std::string& tty = {});

/// Nothing when any line has another shape, or a pane's comes before the server's: then the answer is not a
/// listing.
std::optional<TmuxListing> parseListing(std::string_view output);

/// Before it a chooser could swallow what is pasted, and options that are needed were missing.
inline constexpr std::string_view oldestTmuxVersionName = "3.2";
/// Of a row's `version`.
bool isTooOldTmux(std::string_view version);

/// Whether paste-buffer rewrites control characters unless it is told not to.
bool pasteCleans(std::string_view version);

}  // namespace velmora
