#include "TerminalAutomation/Tmux/Picture/PaneCells.h"

#include <algorithm>
#include <array>

#include "System/Utf8.h"
#include "TerminalAutomation/Tmux/Picture/CellWidth.h"

namespace velmora {
namespace {

constexpr char escape = '\x1B';
constexpr char bell = '\x07';
constexpr char shiftOut = '\x0E';
constexpr char shiftIn = '\x0F';
constexpr int tabStop = 8;

/// Puts text into a grid as tmux did when it filled the pane.
class GridFiller {
 public:
  GridFiller(PaneCells& grid) : grid_(grid) {}

  bool full() const { return row_ >= grid_.rows(); }
  CellStyle& style() { return style_; }

  void newLine() {
    ++row_;
    column_ = 0;
    last_ = nullptr;
  }

  void tab() {
    const int stop = std::min((column_ / tabStop + 1) * tabStop, grid_.columns());
    while (column_ < stop) place({}, 1);
    last_ = nullptr;
  }

  /// `character` is one well-formed code point.
  void put(std::string_view character) {
    const char32_t codePoint = firstCodePoint(character);
    const int width = codePointWidth(codePoint);
    if (width == 0 || followsJoiner(codePoint)) {
      join(character, codePoint);
    } else if (isSkinTone(codePoint) && last_ != nullptr && last_->width == 2) {
      // One picture, but the tone's own two columns stay free behind it.
      PaneCell* emoji = last_;
      join(character, codePoint);
      place({}, 1);
      place({}, 1);
      last_ = emoji;
    } else if (isRegionalIndicator(codePoint) && lastCodePoint_ != 0 && isRegionalIndicator(lastCodePoint_) &&
               last_ != nullptr && last_->width == 1 && column_ < grid_.columns()) {
      PaneCell* flag = last_;
      join(character, codePoint);
      flag->width = 2;
      place({}, 0);
      last_ = flag;
      lastCodePoint_ = 0;  // a third letter starts another flag
    } else {
      place(character, width);
      lastCodePoint_ = codePoint;
    }
  }

 private:
  bool followsJoiner(char32_t codePoint) const {
    return codePoint >= 0x80 && last_ != nullptr && lastCodePoint_ == zeroWidthJoiner;
  }

  void join(std::string_view character, char32_t codePoint) {
    if (last_ == nullptr || last_->text.size() + character.size() > PaneCell::maximumBytes) return;
    last_->text += character;
    lastCodePoint_ = codePoint;
  }

  /// A character that does not fit the row any more is dropped, with all that follows on the line.
  void place(std::string_view character, int width) {
    last_ = nullptr;
    lastCodePoint_ = 0;
    if (full() || column_ + std::max(width, 1) > grid_.columns()) {
      column_ = grid_.columns();
      return;
    }
    PaneCell& cell = grid_.at(column_, row_);
    if (character != " ") cell.text = character;
    cell.width = width;
    cell.style = style_;
    ++column_;
    if (width == 2) {
      PaneCell& rightHalf = grid_.at(column_, row_);
      rightHalf.width = 0;
      rightHalf.style = style_;
      ++column_;
    }
    last_ = &cell;
  }

  PaneCells& grid_;
  CellStyle style_;
  int row_ = 0;
  int column_ = 0;
  PaneCell* last_ = nullptr;  // the cell that a joining character goes to
  char32_t lastCodePoint_ = 0;
};

/// Reads the captured text from front to back. Every step takes at least one byte.
class CaptureReader {
 public:
  CaptureReader(std::string_view text, GridFiller& filler) : text_(text), filler_(filler) {}

  void run() {
    while (at_ < text_.size() && !filler_.full()) {
      const char c = text_[at_];
      if (c == escape) {
        ++at_;
        readEscape();
      } else if (static_cast<unsigned char>(c) < 0x20 || c == '\x7F') {
        ++at_;
        readControl(c);
      } else {
        readCharacter();
      }
    }
  }

 private:
  void readControl(char c) {
    if (c == '\n') filler_.newLine();
    if (c == '\t') filler_.tab();
    if (c == shiftOut) lineDrawing_ = true;
    if (c == shiftIn) lineDrawing_ = false;
  }

  void readCharacter() {
    const std::string_view character = text_.substr(at_, codePointBytes(text_[at_]));
    at_ += character.size();
    const std::string_view drawn = lineDrawing_ ? lineDrawing(character.front()) : std::string_view{};
    filler_.put(drawn.empty() ? character : drawn);
  }

  void readEscape() {
    if (at_ == text_.size()) return;
    const char kind = text_[at_];
    if (kind == '[') {
      ++at_;
      readControlSequence();
    } else if (kind == ']' || kind == 'P' || kind == 'X' || kind == '^' || kind == '_') {
      ++at_;
      skipString();
    } else {
      skipShortEscape();
    }
  }

  void readControlSequence() {
    const std::size_t start = at_;
    while (at_ < text_.size() && text_[at_] >= 0x20 && text_[at_] <= 0x3F) ++at_;
    if (at_ == text_.size()) return;
    const std::string_view parameters = text_.substr(start, at_ - start);
    const char final = text_[at_];
    if (final < 0x40 || final > 0x7E) return;  // broken off by something else, which is read next
    ++at_;
    const bool plain = parameters.find_first_not_of("0123456789:;") == std::string_view::npos;
    if (final == 'm' && plain) applySgr(parameters, filler_.style());
  }

  /// Up to BEL or ESC \. A line break ends a string too, so that a lost end costs one line at most.
  void skipString() {
    while (at_ < text_.size() && text_[at_] != '\n') {
      const char c = text_[at_++];
      if (c == bell) return;
      if (c == escape) {
        if (at_ < text_.size() && text_[at_] == '\\') {
          ++at_;
        }
        return;
      }
    }
  }

  /// ESC, intermediate bytes, one final byte: the choice of a character set and the like.
  void skipShortEscape() {
    while (at_ < text_.size() && text_[at_] >= 0x20 && text_[at_] <= 0x2F) ++at_;
    if (at_ < text_.size() && text_[at_] >= 0x30 && text_[at_] <= 0x7E) ++at_;
  }

  std::string_view text_;
  GridFiller& filler_;
  std::size_t at_ = 0;
  bool lineDrawing_ = false;
};

}  // namespace

PaneCells::PaneCells(int columns, int rows)
    : columns_(std::clamp(columns, 1, maximumColumns)),
      rows_(std::clamp(rows, 1, maximumRows)),
      cells_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_)) {}

PaneCells parsePaneCells(std::string_view text, int columns, int rows) {
  PaneCells cells(columns, rows);
  const std::string wellFormed = repairUtf8(text);
  GridFiller filler(cells);
  CaptureReader(wellFormed, filler).run();
  return cells;
}

std::string_view lineDrawing(char c) {
  static constexpr std::array<std::string_view, 31> fromGrave{
      "◆", "▒", "␉", "␌", "␍", "␊", "°", "±", "␤", "␋", "┘", "┐", "┌", "└", "┼", "⎺",
      "⎻", "─", "⎼", "⎽", "├", "┤", "┴", "┬", "│", "≤", "≥", "π", "≠", "£", "·"};
  switch (c) {
    case '+':
      return "→";
    case ',':
      return "←";
    case '-':
      return "↑";
    case '.':
      return "↓";
    case '0':
      return "█";
    default:
      break;
  }
  if (c < '`' || c > '~') return {};
  return fromGrave[static_cast<std::size_t>(c - '`')];
}

char32_t firstCodePoint(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<char32_t>(static_cast<unsigned char>(text[i])) : U'\0';
  };
  switch (codePointBytes(text.front())) {
    case 1:
      return byte(0);
    case 2:
      return (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
    case 3:
      return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    default:
      return (byte(0) & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
  }
}

}  // namespace velmora
