#include "TerminalAutomation/Tmux/PaneColours.h"

#include <algorithm>
#include <vector>

#include "TerminalAutomation/Tmux/PaneText.h"
#include "TerminalAutomation/Tmux/Picture/PaneCells.h"

namespace velmora {

namespace {

constexpr char escape = '\x1B';
constexpr char bell = '\x07';
constexpr char shiftOut = '\x0E';
constexpr char shiftIn = '\x0F';
constexpr std::string_view reset = "\x1B[0m";
constexpr std::size_t longestSequence = 64;

// How long the SGR sequence at the beginning of `text` is; 0 when there is none.
std::size_t sgrLength(std::string_view text) {
  if (!text.starts_with("\x1B[")) return 0;
  const auto end = text.find_first_not_of("0123456789;:", 2);
  return end < std::min(text.size(), longestSequence) && text[end] == 'm' ? end + 1 : 0;
}

// The same of any sequence.
std::size_t sequenceLength(std::string_view text) {
  if (text.size() < 2) return text.size();
  if (text[1] == '[') {
    const auto end =
        text.find_first_of("@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~\n", 2);
    if (end == std::string_view::npos) return text.size();
    return text[end] == '\n' ? end : end + 1;
  }
  if (text[1] == ']') {  // a link; ends with BEL or ST
    const auto end = text.find_first_of(std::string{bell, escape, '\n'}, 2);
    if (end == std::string_view::npos) return text.size();
    if (text[end] == escape) return std::min(end + 2, text.size());
    return text[end] == '\n' ? end : end + 1;
  }
  return 2;
}

std::vector<std::string_view> partsOf(std::string_view list) {
  std::vector<std::string_view> parts;
  while (true) {
    const auto end = std::min(list.find(';'), list.size());
    parts.push_back(list.substr(0, end));
    if (end == list.size()) return parts;
    list.remove_prefix(end + 1);
  }
}

// The colours and attributes that hold at some place.
class Style {
 public:
  void take(std::string_view sequence) {
    const auto parts = partsOf(sequence.substr(2, sequence.size() - 3));
    for (std::size_t i = 0; i < parts.size(); ++i) {
      const auto part = parts[i];
      if (part.empty() || part == "0") {
        *this = {};
      } else if (part == "38" || part == "48" || part == "58") {
        const bool isIndex = i + 1 < parts.size() && parts[i + 1] == "5";
        const auto last = std::min(parts.size() - 1, i + (isIndex ? 2 : 4));
        std::string colour(part);
        while (i < last) colour += ";" + std::string(parts[++i]);
        colourAt(part[0]) = colour;
      } else if (part == "39" || part == "49" || part == "59") {
        colourAt(part[0]).clear();
      } else if (const char kind = kindOf(part); kind != 0) {
        colourAt(kind) = std::string(part);
      } else if (std::find(attributes_.begin(), attributes_.end(), part) == attributes_.end()) {
        attributes_.emplace_back(part);
      }
    }
  }

  std::string sequence() const {
    std::string list;
    const auto add = [&list](const std::string& part) {
      if (!part.empty()) list += (list.empty() ? "" : ";") + part;
    };
    for (const auto& attribute : attributes_) add(attribute);
    for (const auto& colour : {text_, background_, line_}) add(colour);
    return list.empty() ? std::string() : "\x1B[" + list + "m";
  }

 private:
  std::string& colourAt(char kind) { return kind == '3' ? text_ : kind == '4' ? background_ : line_; }

  // Of one of the sixteen colours: '3' for the text, '4' for what is behind it.
  static char kindOf(std::string_view part) {
    if (part.size() == 2 && (part[0] == '3' || part[0] == '4') && part[1] <= '7') return part[0];
    if (part.size() == 2 && part[0] == '9') return '3';
    return part.size() == 3 && part.starts_with("10") ? '4' : '\0';
  }

  std::vector<std::string> attributes_{};
  std::string text_{};
  std::string background_{};
  std::string line_{};
};

Style styleAfter(std::string_view coloured) {
  Style style;
  for (auto at = coloured.find(escape); at != std::string_view::npos; at = coloured.find(escape, at + 1)) {
    if (const auto length = sgrLength(coloured.substr(at)); length > 0)
      style.take(coloured.substr(at, length));
  }
  return style;
}

// The next place from `at` on that is not inside of a sequence.
std::size_t outsideOfSequence(std::string_view coloured, std::size_t at) {
  const auto begin = coloured.rfind(escape, at);
  if (begin == std::string_view::npos || at >= coloured.size()) return at;
  return std::max(at, begin == at ? at : begin + sgrLength(coloured.substr(begin)));
}

}  // namespace

std::string onlyColours(std::string_view captured) {
  std::string text;
  text.reserve(captured.size());
  bool draws = false;
  for (std::size_t i = 0; i < captured.size(); ++i) {
    const char character = captured[i];
    if (character == escape) {
      const auto rest = captured.substr(i);
      text.append(rest.substr(0, sgrLength(rest)));
      i += sequenceLength(rest) - 1;
    } else if (character == shiftOut || character == shiftIn) {
      draws = character == shiftOut;
    } else if (const auto drawn = draws ? lineDrawing(character) : std::string_view(); !drawn.empty()) {
      text.append(drawn);
    } else if (character == '\n' || character == '\t' || static_cast<unsigned char>(character) >= 0x20) {
      text.push_back(character);
    }
  }
  return text;
}

std::string withoutColours(std::string_view coloured) {
  std::string text;
  text.reserve(coloured.size());
  while (!coloured.empty()) {
    if (const auto length = sgrLength(coloured); length > 0) {
      coloured.remove_prefix(length);
      continue;
    }
    const auto end = std::min(coloured.find(escape, 1), coloured.size());
    text.append(coloured.substr(0, end));
    coloured.remove_prefix(end);
  }
  return text;
}

std::string colouredAfter(std::string_view coloured, std::size_t bytes) {
  return styleAfter(coloured.substr(0, bytes)).sequence() + std::string(coloured.substr(bytes));
}

ColouredEnd colouredEnd(std::string_view coloured, std::int64_t maxCharacters) {
  const bool endsColoured = !styleAfter(coloured).sequence().empty();
  std::string whole(coloured);
  if (endsColoured) whole += reset;
  const auto end = boundedEnd(whole, maxCharacters);
  if (end.text.size() == whole.size()) return {whole, end.totalCharacters};
  const auto resetCharacters = static_cast<std::int64_t>(reset.size());
  for (auto kept = maxCharacters - resetCharacters; kept > 0;) {
    const auto cut = coloured.size() - boundedEnd(coloured, kept).text.size();
    const auto text =
        colouredAfter(coloured, outsideOfSequence(coloured, cut)) + std::string(endsColoured ? reset : "");
    const auto tooMany = characterCount(text) - maxCharacters;
    if (tooMany <= 0) return {text, end.totalCharacters};
    kept -= tooMany;
  }
  return {std::string(boundedEnd(withoutColours(coloured), maxCharacters).text), end.totalCharacters};
}

}  // namespace velmora
