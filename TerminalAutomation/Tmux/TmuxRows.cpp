#include "TerminalAutomation/Tmux/TmuxRows.h"

#include <array>
#include <charconv>
#include <utility>

#include "System/ProgramVersion.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

constexpr std::size_t longestName = 256;  // code points; tmux cuts to as many columns

bool readValue(std::string_view text, std::string& value) {
  value = isValidUtf8(text) ? std::string(text) : repairUtf8(text);
  return true;
}

/// Marks that turn the direction of text or take no room: U+200B to U+200F, U+202A to U+202E, U+2066 to
/// U+2069. `text` begins with a code point of three bytes.
bool isHidden(std::string_view text) {
  const auto second = static_cast<unsigned char>(text[1]);
  const auto third = static_cast<unsigned char>(text[2]);
  return static_cast<unsigned char>(text[0]) == 0xE2 &&
         ((second == 0x80 && ((third >= 0x8B && third <= 0x8F) || (third >= 0xAA && third <= 0xAE))) ||
          (second == 0x81 && third >= 0xA6 && third <= 0xA9));
}

/// What others chose to be read by people and agents: short, and nothing in it that cannot be seen.
bool readName(std::string_view text, std::string& value) {
  std::string all;
  readValue(text, all);
  value.clear();
  std::string_view rest = all;
  for (std::size_t count = 0; !rest.empty() && count < longestName;) {
    const std::size_t length = codePointBytes(rest.front());
    if (length != 3 || !isHidden(rest)) {
      value.append(rest.substr(0, length));
      ++count;
    }
    rest.remove_prefix(length);
  }
  return true;
}

bool readValue(std::string_view text, bool& value) {
  value = text == "1";
  return value || text == "0" || text.empty();
}

template <class Integer>
bool readValue(std::string_view text, Integer& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

/// Part of a row: tmux's name for it, and how its text gets into the row. False when it does not fit.
template <class Row>
struct Field {
  std::string_view name;
  bool (*read)(std::string_view text, Row& row);
};

template <class Row, auto member>
constexpr Field<Row> field(std::string_view name) {
  return {name, [](std::string_view text, Row& row) { return readValue(text, row.*member); }};
}

/// Text that a user or a program chose; a title can be of any length.
template <class Row, auto member>
constexpr Field<Row> nameField(std::string_view name) {
  return {name, [](std::string_view text, Row& row) { return readName(text, row.*member); }};
}

/// A field like "$1", "@2" or "%3".
template <class Row, char sigil, auto member>
constexpr Field<Row> numbered(std::string_view name) {
  return {name, [](std::string_view text, Row& row) {
            return text.starts_with(sigil) && readValue(text.substr(1), row.*member);
          }};
}

// What is the same for all panes, and so is asked for once.
constexpr std::array serverFields{
    field<PaneRow, &PaneRow::serverProcess>("pid"),
    field<PaneRow, &PaneRow::serverStart>("start_time"),
    field<PaneRow, &PaneRow::version>("version"),
    field<PaneRow, &PaneRow::host>("host"),
};

// tmux escapes or refuses tabs and line ends in all of these; the freest text stands last.
constexpr std::array paneFields{
    numbered<PaneRow, '$', &PaneRow::session>("session_id"),
    numbered<PaneRow, '@', &PaneRow::window>("window_id"),
    numbered<PaneRow, '%', &PaneRow::pane>("pane_id"),
    field<PaneRow, &PaneRow::windowNumber>("window_index"),
    field<PaneRow, &PaneRow::paneNumber>("pane_index"),
    field<PaneRow, &PaneRow::tty>("pane_tty"),
    field<PaneRow, &PaneRow::process>("pane_pid"),
    field<PaneRow, &PaneRow::dead>("pane_dead"),
    field<PaneRow, &PaneRow::inputOff>("pane_input_off"),
    field<PaneRow, &PaneRow::synchronized>("pane_synchronized"),
    field<PaneRow, &PaneRow::applicationCursor>("keypad_cursor_flag"),
    field<PaneRow, &PaneRow::active>("pane_active"),
    field<PaneRow, &PaneRow::made>("==:#{@velmora-made},1"),
    // A session stays grouped when the others of its group have ended.
    field<PaneRow, &PaneRow::shown>(
        "?#{||:#{||:#{session_last_attached},#{session_grouped}},#{window_linked}},1,0"),
    field<PaneRow, &PaneRow::stackIndex>("window_stack_index"),
    field<PaneRow, &PaneRow::sessionActivity>("session_activity"),
    field<PaneRow, &PaneRow::cursorColumn>("cursor_x"),
    field<PaneRow, &PaneRow::cursorRow>("cursor_y"),
    field<PaneRow, &PaneRow::historySize>("history_size"),
    field<PaneRow, &PaneRow::program>(plainProgramName),
    nameField<PaneRow, &PaneRow::sessionName>("=256:session_name"),
    nameField<PaneRow, &PaneRow::windowName>("=256:window_name"),
    nameField<PaneRow, &PaneRow::title>("=256:pane_title"),
};

constexpr std::array clientFields{
    field<ClientRow, &ClientRow::activity>("client_activity"),
    field<ClientRow, &ClientRow::created>("client_created"),
    numbered<ClientRow, '$', &ClientRow::session>("session_id"),
    numbered<ClientRow, '@', &ClientRow::window>("window_id"),
    numbered<ClientRow, '%', &ClientRow::pane>("pane_id"),
    field<ClientRow, &ClientRow::name>("client_name"),
};

constexpr std::array bufferFields{
    field<BufferRow, &BufferRow::created>("buffer_created"),
    field<BufferRow, &BufferRow::name>("s/[^A-Za-z0-9-]/?/:buffer_name"),
};

template <class Fields>
std::string formatOf(std::string mark, const Fields& fields) {
  for (const auto& field : fields) mark.append("\t#{").append(field.name).append("}");
  return mark;
}

/// Whether `line` is a tab and a text for each of the fields, and no more.
template <class Fields, class Row>
bool readRow(std::string_view line, const Fields& fields, Row& row) {
  for (const auto& field : fields) {
    if (!line.starts_with('\t')) return false;
    line.remove_prefix(1);
    const std::string_view text = line.substr(0, line.find('\t'));
    if (!field.read(text, row)) return false;
    line.remove_prefix(text.size());
  }
  return line.empty();
}

}  // namespace

const std::string& serverRowFormat() {
  static const std::string format = formatOf("S", serverFields);
  return format;
}

const std::string& paneRowFormat() {
  static const std::string format = formatOf("R", paneFields);
  return format;
}

const std::string& clientRowFormat() {
  static const std::string format = formatOf("C", clientFields);
  return format;
}

const std::string& bufferRowFormat() {
  static const std::string format = formatOf("B", bufferFields);
  return format;
}

std::vector<std::string> paneListing(const std::string& tty) {
  std::vector<std::string> commands{"display-message", "-p", serverRowFormat(), ";", "list-panes", "-a", "-F",
                                    paneRowFormat()};
  if (!tty.empty()) commands.insert(commands.end(), {"-f", "#{==:#{pane_tty}," + tty + "}"});
  return commands;
}

std::optional<TmuxListing> parseListing(std::string_view output) {
  TmuxListing listing;
  std::optional<PaneRow> server;  // what every pane's row begins with
  while (!output.empty()) {
    const std::size_t lineEnd = output.find('\n');
    if (lineEnd == std::string_view::npos) return std::nullopt;
    const std::string_view line = output.substr(0, lineEnd);
    output.remove_prefix(lineEnd + 1);
    const bool good =
        line.starts_with('S') ? readRow(line.substr(1), serverFields, server.emplace())
        : line.starts_with('R')
            ? server && readRow(line.substr(1), paneFields, listing.panes.emplace_back(*server))
        : line.starts_with('C') ? readRow(line.substr(1), clientFields, listing.clients.emplace_back())
        : line.starts_with('B') ? readRow(line.substr(1), bufferFields, listing.buffers.emplace_back())
                                : false;
    if (!good) return std::nullopt;
  }
  return listing;
}

// A version without a number ("master") is newer than all others.

bool isTooOldTmux(std::string_view version) {
  const auto numbers = versionNumbers(version);
  return numbers && *numbers < *versionNumbers(oldestTmuxVersionName);
}

bool pasteCleans(std::string_view version) {
  const auto numbers = versionNumbers(version);
  return !numbers || *numbers >= std::pair(3, 7);
}

}  // namespace velmora
