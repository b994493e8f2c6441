// TmuxOperations: what the extended listing says of a pane beyond the plain one.
#include <charconv>
#include <string_view>

#include "System/Utf8.h"
#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

namespace {

// The directory stands last, since it may hold anything; tabs and line ends in it become "?".
std::string detailsFormat() {
  return "D\t#{pane_tty}\t#{pane_width}\t#{pane_height}\t#{alternate_on}\t#{session_attached}\t#{" +
         std::string(plainProgramName) + "}\t#{s/[\t\n]/?/:pane_current_path}";
}

// The text up to the next tab, which goes with it.
std::string_view takeField(std::string_view& line) {
  const auto end = std::min(line.find('\t'), line.size());
  const auto field = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return field;
}

std::optional<std::int64_t> number(std::string_view text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<std::string> wordOrNothing(std::string_view text) {
  return text.empty() ? std::nullopt : std::optional(plainText(text));
}

}  // namespace

std::map<std::string, TabDetails> TmuxOperations::tabDetails(Deadline deadline) {
  std::map<std::string, TabDetails> all;
  const TmuxAnswer answer = invoke(deadline, {"list-panes", "-a", "-F", detailsFormat()});
  if (saysNoSessions(answer)) return all;
  if (auto failure = tmuxFailure(answer, TmuxEffect::none)) throw std::move(*failure);
  std::string_view output = answer.output;
  while (!output.empty()) {
    const auto lineEnd = std::min(output.find('\n'), output.size());
    std::string_view line = output.substr(0, lineEnd);
    output.remove_prefix(std::min(lineEnd + 1, output.size()));
    if (takeField(line) != "D") continue;
    const std::string tty(takeField(line));
    TabDetails details;
    details.columns = number(takeField(line));
    details.rows = number(takeField(line));
    details.alternateScreen = number(takeField(line)).value_or(0) != 0;
    details.attached = number(takeField(line)).value_or(0) != 0;
    details.program = wordOrNothing(takeField(line));
    details.directory = wordOrNothing(line);
    // A window that several sessions show has a row for each; one that is attached counts.
    const auto [known, isNew] = all.try_emplace(tty, details);
    if (!isNew && details.attached.value_or(false)) known->second.attached = true;
  }
  return all;
}

}  // namespace velmora
