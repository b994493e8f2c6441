// TmuxOperations: whether a command has ended, told from the process table and the terminal's mode; tmux is
// asked only when these say that the shell waits for input.
#include <fcntl.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <vector>

#include "ShellIntegration/ShellRecord.h"
#include "System/FileDescriptor.h"
#include "TerminalAutomation/Tmux/BusyDetector.h"
#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "TerminalAutomation/Tmux/PaneText.h"
#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

// How long a screen must stay as it is before one that tells nothing counts as that of a shell at its prompt.
constexpr auto doubtEnds = 1500ms;
constexpr std::size_t watchedRowsLimit = std::size_t{16} << 20;

std::string_view withoutEnd(std::string_view text) {
  const auto end = text.find_last_not_of(" \t\r");
  return end == std::string_view::npos ? std::string_view() : text.substr(0, end + 1);
}

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

// What of a row stands left of the column; characters of two columns count as one here.
std::string_view leftOf(std::string_view row, std::int64_t column) {
  std::size_t bytes = 0;
  for (std::int64_t seen = 0; bytes < row.size(); ++bytes) {
    const bool begins = (static_cast<unsigned char>(row[bytes]) & 0xC0u) != 0x80u;
    if (begins && seen++ == column) break;
  }
  return withoutEnd(row.substr(0, bytes));
}

// The prompts by which bash and zsh ask for the rest of a command: "> ", "dquote> ", "for then> ".
bool asksForMore(std::string_view line) {
  return line.ends_with('>') && line.find_first_not_of("abcdefghijklmnopqrstuvwxyz ") == line.size() - 1;
}

// Whether bytes that were typed wait to be read.
bool inputWaits(const std::string& tty) {
  const FileDescriptor terminal(::open(tty.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  int count = 0;
  return terminal && ::ioctl(terminal.get(), FIONREAD, &count) == 0 && count > 0;
}

}  // namespace

class TmuxWatch final : public TabWatch {
 public:
  TmuxWatch(TmuxOperations& operations, PaneRow pane, std::string command,
            TerminalOperations::Deadline deadline)
      : operations_(operations), pane_(std::move(pane)), command_(std::move(command)) {
    before_ = screen(deadline);
    const auto found = shellOfPane(*operations_.parts_.processes, pane_.process);
    const auto shell = found ? found->state.name : std::string();
    plainShell_ = shell == "sh" || shell == "dash" || shell == "ash";
    fish_ = shell == "fish";
    // Of a busy pane the next command to end is another one.
    if (found && !operations_.isBusy(pane_)) noted_ = recordOf(found->state);
  }

  Activity glance() override {
    const ProcessTable& processes = *operations_.parts_.processes;
    const auto shell = shellOfPane(processes, pane_.process);
    // One that cannot be looked at for the moment may well be at work.
    if (!shell) return processes.hasEnded(pane_.process) ? Activity::closed : Activity::busy;
    const bool works = shell->state.running || operations_.isBusy(pane_) || inputWaits(pane_.tty);
    return works ? Activity::busy : Activity::quiet;
  }

  View look(std::int64_t maxCharacters, bool unfinished, Steady::time_point deadline) override {
    const auto now = screen(deadline);
    // Of what has not finished the cursor's line is a question, not the prompt.
    const auto ended = noteOfCommand();
    View view{.taken = !unfinished && isTaken(now, ended.has_value())};
    if (view.taken && ended) view.exitStatus = ended->status;
    if (view.taken || unfinished) readOutput(view, now, maxCharacters, deadline);
    return view;
  }

 private:
  struct Screen {
    std::int64_t column = 0, row = 0, history = 0, limit = 0;
    std::string line{};   // left of the cursor
    std::string above{};  // the row above

    bool operator==(const Screen&) const = default;
  };

  Screen screen(Steady::time_point deadline) const {
    const auto output = operations_.read(deadline, readRows(pane_), watchedRowsLimit);
    std::string_view rest = output;
    std::array<std::int64_t, 4> numbers{};
    for (auto& number : numbers) {
      if (!rest.starts_with('\t')) throw tmuxError::unreadableAnswer();
      rest.remove_prefix(1);
      const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
      if (error != std::errc()) throw tmuxError::unreadableAnswer();
      rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    }
    rest.remove_prefix(std::min(rest.find('\n'), rest.size() - 1) + 1);
    Screen result{numbers[0], numbers[1], numbers[2], numbers[3]};
    const auto rows = linesOf(rest);
    const auto row = static_cast<std::size_t>(result.row);
    if (row < rows.size()) result.line = leftOf(rows[row], result.column);
    if (row > 0 && row - 1 < rows.size()) result.above = withoutEnd(rows[row - 1]);
    return result;
  }

  // What the pane's own shell has noted; nothing of another process, or of one that had its number before.
  std::optional<ShellRecord> recordOf(const ProcessState& state) const {
    auto record = readShellRecord(operations_.options_.runtimeFolder(), pane_.tty);
    if (!record || record->process != pane_.process || record->startTicks != state.startTicks)
      return std::nullopt;
    return record;
  }

  // The note about the command, and no other: exactly one has ended in this shell, and it was begun after the
  // watch was.
  std::optional<ShellRecord> noteOfCommand() const {
    const auto state = noted_ ? operations_.parts_.processes->state(pane_.process) : std::nullopt;
    auto record = state ? recordOf(*state) : std::nullopt;
    if (!record || record->instance != noted_->instance || record->number != noted_->number + 1 ||
        (record->began != 0 && record->began < begun_))
      return std::nullopt;
    return record;
  }

  // The shell edits a line. Is that a prompt after the command, or the command itself, not yet submitted?
  bool isTaken(const Screen& now, bool ended) {
    // Of several lines only the first may have ended.
    ended = ended && command_.find('\n') == std::string::npos;
    if (now != last_ || !since_) since_ = Steady::now();
    last_ = now;
    const bool stays = Steady::now() - *since_ >= doubtEnds;
    if (now == before_) return ended || stays;  // not typed yet, or the screen was cleared
    if (now.line == before_.line) return true;
    if (plainShell_) {
      // It has no editor: a question looks the same but for its words.
      const auto sigil = [](const std::string& line) { return line.empty() ? '\0' : line.back(); };
      return !now.line.empty() && sigil(now.line) == sigil(before_.line);
    }
    if (!ended && (endsWithCommand(now.above + now.line) || asksForMore(now.line))) return false;
    return !now.line.empty() || (stays && !fish_);  // fish asks for the rest of a command without a prompt
  }

  bool endsWithCommand(std::string_view text) const {
    constexpr std::size_t enough = 16;
    std::string_view tail = command_;
    tail = withoutEnd(tail.substr(tail.find_last_of('\n') + 1));
    if (tail.size() > enough) tail.remove_prefix(tail.size() - enough);
    return !tail.empty() && text.ends_with(tail);
  }

  // Whether a row shows a line that was typed. fish 4 leaves behind it what it suggested.
  bool isTyped(std::string_view row, std::string_view typed, std::string_view prompt) const {
    row = withoutEnd(row);
    if (row.ends_with(typed)) return true;
    if (!fish_ || !row.starts_with(prompt)) return false;
    row.remove_prefix(prompt.size());
    row.remove_prefix(std::min(row.find_first_not_of(' '), row.size()));
    return row.starts_with(typed);
  }

  // Of the row with the new prompt: output without a line end has the prompt behind it. Nothing where the
  // prompt is another one than before, as nobody can say then where it begins.
  std::string_view leftOfPrompt(std::string_view row) const {
    row = withoutEnd(row);
    return row.ends_with(before_.line) && !before_.line.empty()
               ? row.substr(0, row.size() - before_.line.size())
               : std::string_view();
  }

  void readOutput(View& view, const Screen& now, std::int64_t maxCharacters,
                  Steady::time_point deadline) const {
    // Where the history is full or was cleared, the line of the prompt cannot be found again.
    const bool lost = now.history < before_.history || now.history >= now.limit;
    const auto first = before_.history + before_.row - now.history;
    auto captured = operations_.read(deadline, readSince(pane_, lost ? std::nullopt : std::optional(first)),
                                     TmuxOperations::historyLimit);
    captured.erase(0, 1);  // the end of the guard's line
    const auto text = tidyPaneText(std::move(captured));
    auto lines = linesOf(text);
    // The prompt; an empty one is among the blank lines that are gone already.
    if (view.taken && !now.line.empty() && !lines.empty() && withoutEnd(lines.back()).ends_with(now.line)) {
      lines.back() = leftOfPrompt(lines.back());
      if (lines.back().empty()) lines.pop_back();
    }
    std::size_t begin = 0;
    if (!lost) {
      for (const auto typed : linesOf(command_)) {
        const std::string_view prompt = begin == 0 ? before_.line : std::string_view();
        if (begin == lines.size() || !isTyped(lines[begin], withoutEnd(typed), prompt)) break;
        ++begin;
      }
    }
    std::string output;
    for (std::size_t i = begin; i < lines.size(); ++i) {
      output.append(lines[i]);
      if (i + 1 < lines.size()) output.push_back('\n');
    }
    const auto end = boundedEnd(output, maxCharacters);
    view.output = std::string(end.text);
    view.truncated = lost || end.totalCharacters > maxCharacters;
  }

  TmuxOperations& operations_;
  const PaneRow pane_;
  const std::string command_;
  // In microseconds since 1970, as the shells count.
  const std::int64_t begun_ = std::chrono::duration_cast<std::chrono::microseconds>(
                                  std::chrono::system_clock::now().time_since_epoch())
                                  .count();
  std::optional<ShellRecord> noted_{};  // before the command
  Screen before_{};
  bool plainShell_ = false;
  bool fish_ = false;
  Screen last_{};
  std::optional<Steady::time_point> since_{};  // when the screen became what `last_` says
};

std::shared_ptr<TabWatch> TmuxOperations::watch(const std::string& command, const TabAddress& tab,
                                                Deadline deadline) {
  return std::make_shared<TmuxWatch>(*this, paneAt(tab), command, deadline);
}

}  // namespace velmora
