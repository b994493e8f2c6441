#include "TerminalAutomation/Tmux/TmuxRows.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace velmora {

namespace {

/// Takes the fields of one line, in order. A field that does not fit makes the whole line bad.
class LineFields {
 public:
  explicit LineFields(std::string_view line) : rest_(line) {}

  void take(std::string& field) { field = std::string(next()); }
  void take(bool& field) {
    const std::string_view text = next();
    field = text == "1";
    good_ = good_ && (text == "0" || text == "1" || text.empty());
  }
  template <class Integer>
  void take(Integer& field) {
    takeInteger(next(), field);
  }
  /// "$1", "@2" or "%3".
  void take(char sigil, std::int64_t& field) {
    std::string_view text = next();
    good_ = good_ && text.starts_with(sigil);
    if (!text.empty()) text.remove_prefix(1);
    takeInteger(text, field);
  }

  bool complete() const { return good_ && ended_; }

 private:
  std::string_view next() {
    if (ended_) good_ = false;
    const std::size_t tab = rest_.find('\t');
    const std::string_view field = rest_.substr(0, tab);
    ended_ = tab == std::string_view::npos;
    rest_.remove_prefix(ended_ ? rest_.size() : tab + 1);
    return field;
  }

  template <class Integer>
  void takeInteger(std::string_view text, Integer& field) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), field);
    good_ = good_ && error == std::errc() && end == text.data() + text.size();
  }

  std::string_view rest_;
  bool good_ = true;
  bool ended_ = false;
};

bool parsePane(std::string_view line, PaneRow& row) {
  LineFields fields(line);
  fields.take(row.serverProcess);
  fields.take(row.serverStart);
  fields.take(row.version);
  fields.take(row.host);
  fields.take('$', row.session);
  fields.take('@', row.window);
  fields.take('%', row.pane);
  fields.take(row.tty);
  fields.take(row.process);
  fields.take(row.dead);
  fields.take(row.inputOff);
  fields.take(row.synchronized);
  fields.take(row.applicationCursor);
  fields.take(row.active);
  fields.take(row.stackIndex);
  fields.take(row.sessionActivity);
  fields.take(row.sessionName);
  fields.take(row.windowName);
  fields.take(row.title);
  return fields.complete();
}

bool parseClient(std::string_view line, ClientRow& row) {
  LineFields fields(line);
  fields.take(row.activity);
  fields.take(row.created);
  fields.take('$', row.session);
  fields.take('@', row.window);
  fields.take(row.name);
  return fields.complete();
}

}  // namespace

const std::string& paneRowFormat() {
  static const std::string format =
      "R\t#{pid}\t#{start_time}\t#{version}\t#{host}\t#{session_id}\t#{window_id}\t#{pane_id}\t#{pane_tty}\t"
      "#{pane_pid}\t#{pane_dead}\t#{pane_input_off}\t#{pane_synchronized}\t#{keypad_cursor_flag}\t#{pane_"
      "active}\t"
      "#{window_stack_index}\t#{session_activity}\t#{session_name}\t#{window_name}\t#{pane_title}";
  return format;
}

const std::string& clientRowFormat() {
  static const std::string format =
      "C\t#{client_activity}\t#{client_created}\t#{session_id}\t#{window_id}\t#{client_name}";
  return format;
}

std::optional<TmuxListing> parseListing(std::string_view output) {
  TmuxListing listing;
  while (!output.empty()) {
    const std::size_t lineEnd = output.find('\n');
    if (lineEnd == std::string_view::npos) return std::nullopt;
    const std::string_view line = output.substr(0, lineEnd);
    output.remove_prefix(lineEnd + 1);
    if (line.starts_with("R\t")) {
      if (!parsePane(line.substr(2), listing.panes.emplace_back())) return std::nullopt;
    } else if (line.starts_with("C\t")) {
      if (!parseClient(line.substr(2), listing.clients.emplace_back())) return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  return listing;
}

int tmuxVersionNumber(std::string_view version) {
  const std::size_t digit = version.find_first_of("0123456789");
  if (digit == std::string_view::npos) return std::numeric_limits<int>::max();
  version.remove_prefix(digit);
  int major = 0;
  int minor = 0;
  const char* const end = version.data() + version.size();
  const auto parsed = std::from_chars(version.data(), end, major);
  if (parsed.ptr != end && *parsed.ptr == '.') std::from_chars(parsed.ptr + 1, end, minor);
  // The server may call itself anything.
  const auto number = std::int64_t{major} * 100 + minor;
  return static_cast<int>(std::min<std::int64_t>(number, std::numeric_limits<int>::max()));
}

}  // namespace velmora
