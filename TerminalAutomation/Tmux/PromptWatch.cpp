#include "TerminalAutomation/Tmux/PromptWatch.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "System/Utf8.h"
#include "TerminalAutomation/Tmux/Picture/CellWidth.h"
#include "TerminalAutomation/Tmux/Picture/PaneCells.h"

namespace velmora {

namespace {

/// How long a user who typed is taken to be still at it.
constexpr double restAfterKey = 10;
/// tmux counts in seconds: keys in the second of an attach look like the attach itself.
constexpr double restAfterAttach = 2;
/// A server's clock may be a little ahead; more is a clock that was set back.
constexpr double clockSlack = 2;
/// How long the cursor may still move after the bridge has typed.
constexpr double settleTime = 2;

bool isLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// "> " of bash, "quote> " of zsh, the indentation of fish: the shell asks for the rest of a command.
bool isContinuation(std::string_view left) {
  if (left.find_first_not_of(' ') == std::string_view::npos) return !left.empty();
  return left.ends_with("> ") &&
         left.substr(0, left.size() - 2).find_first_not_of("abcdefghijklmnopqrstuvwxyz ") ==
             std::string_view::npos;
}

/// A prompt ends in a blank or a sign of its own; these end words.
bool endsInWord(std::string_view left) {
  return !left.empty() &&
         (isLetterOrDigit(left.back()) ||
          std::string_view("/\"'-_.=,;\\*+&|({[<^`").find(left.back()) != std::string_view::npos);
}

/// "$ ", "❯ " and the like: what stands behind them was typed.
bool endsPrompt(std::string_view text) {
  return text.size() >= 2 && text.back() == ' ' && text[text.size() - 2] != ' ' &&
         !isLetterOrDigit(text[text.size() - 2]);
}

/// "ann@desk:~$ ls ": words behind what ends most prompts.
bool hasTextBehindSign(std::string_view left) {
  for (std::size_t sign = left.find_first_of("$#%>"); sign != std::string_view::npos;
       sign = left.find_first_of("$#%>", sign + 1)) {
    const std::string_view behind = left.substr(sign + 1);
    if (behind.starts_with(' ') && behind.find_first_not_of(' ') != std::string_view::npos) return true;
  }
  return false;
}

/// How many bytes of well-formed `text` fill `columns`; nothing when it has fewer.
std::optional<std::size_t> bytesOfColumns(std::string_view text, std::int64_t columns) {
  std::size_t bytes = 0;
  while (bytes < text.size()) {
    columns -= codePointWidth(firstCodePoint(text.substr(bytes)));
    if (columns < 0) return bytes;
    bytes += codePointBytes(text[bytes]);
  }
  return columns > 0 ? std::nullopt : std::optional(bytes);
}

std::int64_t columnsOf(std::string_view text) {
  std::int64_t columns = 0;
  while (!text.empty()) {
    columns += codePointWidth(firstCodePoint(text));
    text.remove_prefix(codePointBytes(text.front()));
  }
  return columns;
}

std::string_view withoutBlanksAtEnd(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

std::optional<CursorLine> parseCursorLine(std::string_view output, const PaneRow& pane) {
  const std::string expected = "\t" + std::to_string(pane.cursorColumn) + "\t" +
                               std::to_string(pane.cursorRow) + "\t" + std::to_string(pane.historySize) +
                               "\t";
  if (!output.starts_with(expected)) return std::nullopt;
  const std::string text = repairUtf8(output.substr(expected.size()));
  // The width; the rows from the top with wrapped ones joined; the cursor's row alone.
  std::vector<std::string_view> lines;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    lines.push_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  std::int64_t width = 0;
  if (lines.size() < 3 ||
      std::from_chars(lines[0].data(), lines[0].data() + lines[0].size(), width).ec != std::errc() ||
      width < 1)
    return std::nullopt;
  const std::string_view row = lines.back();
  const std::string_view joined = lines[lines.size() - 2];
  CursorLine line{.wrapped = withoutBlanksAtEnd(joined).size() > withoutBlanksAtEnd(row).size()};
  for (std::size_t above = lines.size() - 3; above > 0; --above) {
    const std::int64_t columns = columnsOf(lines[above]);
    if (columns == 0 || columns % width != 0 || lines[above].ends_with(' ')) break;
    line.above.insert(0, lines[above]);
  }
  const auto bytes = bytesOfColumns(row, pane.cursorColumn);
  line.left = row.substr(0, bytes.value_or(row.size()));
  if (bytes) {
    line.cursorInText = *bytes < row.size() && row[*bytes] != ' ';
  } else {
    line.left.append(static_cast<std::size_t>(pane.cursorColumn - columnsOf(row)), ' ');
  }
  return line;
}

void PromptWatch::see(const ArrangedPane& pane, bool idle, Date taken) {
  const MutexLock lock(mutex_);
  Prompt& prompt = prompts_[keyOf(pane.row)];
  if (taken < prompt.seen) return;
  prompt.seen = taken;
  prompt.lastKey = pane.lastKey;
  prompt.lastAttach = pane.lastAttach;
  prompt.lastActivity = pane.lastActivity;
  if (!idle || attachedJustNow(prompt)) return;
  // A line that somebody may be typing is no measure for later.
  const bool stays = prompt.touched ? taken.unixSeconds() < prompt.touched->unixSeconds() + settleTime ||
                                          prompt.lastActivity > prompt.knownActivity
                                    : prompt.empty || prompt.lastKey > 0;
  if (stays) return;
  const Prompt::Place place = placeOf(pane.row);
  if (prompt.empty && prompt.empty->column != place.column) prompt.text.reset();
  prompt.touched.reset();
  prompt.empty = place;
  prompt.knownActivity = prompt.lastActivity;
}

void PromptWatch::forgetBefore(Date taken) {
  const MutexLock lock(mutex_);
  std::erase_if(prompts_, [&](const auto& entry) {
    return entry.second.seen.unixSeconds() < taken.unixSeconds() - restAfterKey;
  });
}

bool PromptWatch::typedLately(const Prompt& prompt) const {
  if (prompt.lastKey == 0) return false;
  const double since = now_().unixSeconds() - static_cast<double>(prompt.lastKey);
  return since > -clockSlack && since < restAfterKey;
}

bool PromptWatch::attachedJustNow(const Prompt& prompt) const {
  const double since = now_().unixSeconds() - static_cast<double>(prompt.lastAttach);
  return since > -clockSlack && since < restAfterAttach;
}

PromptWatch::Line PromptWatch::line(const PaneRow& pane) const {
  const MutexLock lock(mutex_);
  const auto found = prompts_.find(keyOf(pane));
  if (found == prompts_.end()) return Line::empty;
  const Prompt& prompt = found->second;
  if (typedLately(prompt) || attachedJustNow(prompt)) return Line::typedIn;
  if (prompt.lastActivity > prompt.knownActivity) return Line::doubtful;
  return prompt.touched || prompt.empty == placeOf(pane) ? Line::empty : Line::doubtful;
}

bool PromptWatch::looksTypedIn(const Prompt& prompt, const Prompt::Place& place, const CursorLine& looked) {
  const std::string& left = looked.left;
  if (looked.cursorInText) return true;
  if (!looked.wrapped && looked.above.empty() && prompt.text == left) return false;
  // The same text on two lines was not typed: it is the prompt.
  if (prompt.refused && prompt.refused->first != place.line && prompt.refused->second == left) return false;
  if (isContinuation(left) || looked.wrapped || endsInWord(left)) return true;
  if (!prompt.empty || prompt.empty->column == 0) return hasTextBehindSign(left);
  const bool longer = !looked.above.empty() || place.column > prompt.empty->column;
  if (!longer) return false;
  if (place.line == prompt.empty->line && prompt.lastActivity > prompt.knownActivity) return true;
  // The rest behind what was the whole prompt before. A prompt may grow (a folder, a branch): then its former
  // end is no end any more.
  const std::string whole = looked.above + left;
  const auto bytes = bytesOfColumns(whole, prompt.empty->column);
  return bytes && endsPrompt(std::string_view(whole).substr(0, *bytes)) &&
         (!prompt.text || whole.starts_with(*prompt.text));
}

PromptWatch::Line PromptWatch::settle(const PaneRow& pane, const CursorLine& looked) {
  const MutexLock lock(mutex_);
  Prompt& prompt = prompts_[keyOf(pane)];
  const auto place = placeOf(pane);
  if (looksTypedIn(prompt, place, looked)) {
    if (!prompt.refused || prompt.refused->first != place.line) prompt.refused = {place.line, looked.left};
    return Line::typedIn;
  }
  prompt.touched.reset();
  prompt.refused.reset();
  prompt.empty = place;
  prompt.knownActivity = prompt.lastActivity;
  prompt.text = looked.left;
  return Line::empty;
}

IdleGuard PromptWatch::guard(const PaneRow& pane) const {
  const MutexLock lock(mutex_);
  IdleGuard guard;
  if (const auto found = prompts_.find(keyOf(pane)); found != prompts_.end()) {
    guard.lastActivity = found->second.lastActivity;
    guard.cursorHolds = !found->second.touched;
  }
  return guard;
}

void PromptWatch::touch(const PaneRow& pane) {
  const MutexLock lock(mutex_);
  const auto found = prompts_.find(keyOf(pane));
  if (found == prompts_.end()) return;
  found->second.touched = now_();
  found->second.knownActivity = found->second.lastActivity;
}

}  // namespace velmora
