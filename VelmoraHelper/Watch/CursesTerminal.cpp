#include "VelmoraHelper/Watch/CursesTerminal.h"

#include <curses.h>

#include <cstdint>
#include <cstdio>

#include "VelmoraHelper/Commands/CellText.h"
#include "VelmoraHelper/Watch/Capability.h"
#include "VelmoraHelper/Watch/EndingSignals.h"

namespace velmora {

namespace {

enum ColourPair : short { greenPair = 1, yellowPair, redPair };

// UTF-8 of a code point that a key gave.
std::string utf8(wint_t key) {
  const auto c = static_cast<std::uint32_t>(key);
  const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
  const auto rest = [&](int shift) { return byte(0x80 | (c >> shift & 0x3F)); };
  if (c < 0x80) return {byte(c)};
  if (c < 0x800) return {byte(0xC0 | c >> 6), rest(0)};
  if (c < 0x10000) return {byte(0xE0 | c >> 12), rest(6), rest(0)};
  return {byte(0xF0 | c >> 18), rest(12), rest(6), rest(0)};
}

WatchKey keyOf(wint_t code) {
  switch (code) {
    case KEY_UP:
      return WatchKey::up;
    case KEY_DOWN:
      return WatchKey::down;
    case KEY_PPAGE:
      return WatchKey::pageUp;
    case KEY_NPAGE:
      return WatchKey::pageDown;
    case KEY_HOME:
      return WatchKey::home;
    case KEY_END:
      return WatchKey::end;
    case KEY_ENTER:
      return WatchKey::enter;
    case KEY_BACKSPACE:
      return WatchKey::backspace;
    default:
      return WatchKey::none;
  }
}

attr_t attributesOf(WatchStyle style, bool hasColour) {
  const auto colour = [&](ColourPair pair, attr_t without) {
    return hasColour ? static_cast<attr_t>(COLOR_PAIR(pair)) : without;
  };
  switch (style) {
    case WatchStyle::title:
      return A_BOLD | A_REVERSE;
    case WatchStyle::heading:
      return A_BOLD | A_UNDERLINE;
    case WatchStyle::faint:
      return A_DIM;
    case WatchStyle::good:
      return colour(greenPair, A_NORMAL);
    case WatchStyle::warning:
      return colour(yellowPair, A_NORMAL) | A_BOLD;
    case WatchStyle::bad:
      return colour(redPair, A_UNDERLINE) | A_BOLD;
    case WatchStyle::selected:
      return A_REVERSE;
    case WatchStyle::plain:
      break;
  }
  return A_NORMAL;
}

}  // namespace

struct CursesTerminal::Library {
  EndingSignals signals{};
  SCREEN* screen = nullptr;
  bool hasColour = false;
  ~Library() {
    if (screen == nullptr) return;
    ::endwin();
    signals.screenIsGivenBack();
    ::delscreen(screen);
  }
};

CursesTerminal::CursesTerminal(const Environment& environment) : library_(std::make_unique<Library>()) {
  const auto name = environmentValue(environment, "TERM");
  const auto refuse = [&](const std::string& why) {
    throw UnusableTerminal("no screen can be drawn on this terminal (TERM is \"" + name + "\"): " + why +
                           "; `velmora watch --plain` prints lines");
  };
  library_->screen = name.empty() ? nullptr : ::newterm(nullptr, stdout, stdin);
  if (library_->screen == nullptr) refuse("it is not known here");
  if (!capability("cup") || !capability("clear")) refuse("its cursor cannot be moved");
  library_->signals.screenIsTaken();
  ::cbreak();
  ::noecho();
  ::nonl();
  ::keypad(stdscr, true);
  ::nodelay(stdscr, true);
  ::set_escdelay(50);  // milliseconds until an Escape is the key and not the beginning of another
  ::curs_set(0);
  const auto noColour = environmentValue(environment, "NO_COLOR");
  library_->hasColour = noColour.empty() && ::has_colors();
  if (!library_->hasColour) return;
  ::start_color();
  const short background = ::use_default_colors() == OK ? short{-1} : short{COLOR_BLACK};
  ::init_pair(greenPair, COLOR_GREEN, background);
  ::init_pair(yellowPair, COLOR_YELLOW, background);
  ::init_pair(redPair, COLOR_RED, background);
}

CursesTerminal::~CursesTerminal() = default;

WatchSize CursesTerminal::size() const { return {.columns = getmaxx(stdscr), .rows = getmaxy(stdscr)}; }

void CursesTerminal::draw(const WatchScreen& screen) {
  ::werase(stdscr);
  int row = 0;
  for (const auto& line : screen.lines) {
    ::wmove(stdscr, row++, 0);
    for (const auto& run : line) {
      ::wattrset(stdscr, static_cast<int>(attributesOf(run.style, library_->hasColour)));
      const auto text = wideText(run.text);
      ::waddnwstr(stdscr, text.data(), static_cast<int>(text.size()));
    }
    ::wattrset(stdscr, A_NORMAL);
  }
  ::curs_set(screen.cursor ? 1 : 0);
  if (screen.cursor) ::wmove(stdscr, row - 1, *screen.cursor);
  ::wrefresh(stdscr);
}

void CursesTerminal::forgetWhatIsShown() { ::clearok(stdscr, true); }

WatchInput CursesTerminal::read() {
  wint_t key = 0;
  for (int kind = ::wget_wch(stdscr, &key); kind != ERR; kind = ::wget_wch(stdscr, &key)) {
    if (kind == KEY_CODE_YES) {
      const auto known = keyOf(key);
      if (known != WatchKey::none) return {known, {}};
      continue;  // also that the size has changed, which the caller sees
    }
    if (key == '\r' || key == '\n') return {WatchKey::enter, {}};
    if (key == '\t') return {WatchKey::tab, {}};
    if (key == 0x1B) return {WatchKey::escape, {}};
    if (key == 0x7F || key == '\b') return {WatchKey::backspace, {}};
    if (key >= 0x20 || key == '\f') return {WatchKey::character, utf8(key)};
  }
  return {};
}

void CursesTerminal::handOver() {
  ::endwin();
  library_->signals.screenIsGivenBack();
}

void CursesTerminal::takeBack() {
  library_->signals.screenIsTaken();
  ::clearok(stdscr, true);
  ::wrefresh(stdscr);
}

}  // namespace velmora
