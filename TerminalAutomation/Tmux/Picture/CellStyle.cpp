#include "TerminalAutomation/Tmux/Picture/CellStyle.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmora {
namespace {

constexpr int absent = -1;
constexpr int largestNumber = 65'535;  // longer numbers stay here: no SGR parameter is that large

/// One parameter with its sub-parameters: "4:3" is {4, 3}, "58::2" is {58, absent, 2}.
struct Parameter {
  std::array<int, 8> numbers{};
  std::size_t count = 0;

  int first() const { return std::max(numbers[0], 0); }
};

/// Takes parameters off the front of an SGR string. An empty string holds one empty parameter, as the
/// terminal reads it.
class ParameterReader {
 public:
  explicit ParameterReader(std::string_view rest) : rest_(rest) {}

  bool next(Parameter& parameter) {
    if (ended_) return false;
    const std::size_t end = rest_.find(';');
    parameter = parse(rest_.substr(0, end));
    if (end == std::string_view::npos) {
      ended_ = true;
    } else {
      rest_.remove_prefix(end + 1);
    }
    return true;
  }

 private:
  static Parameter parse(std::string_view text) {
    Parameter parameter;
    parameter.numbers.fill(absent);
    parameter.count = 1;
    for (const char c : text) {
      if (c == ':') {
        if (parameter.count == parameter.numbers.size()) break;
        ++parameter.count;
      } else if (c >= '0' && c <= '9') {
        int& number = parameter.numbers[parameter.count - 1];
        number = std::min(std::max(number, 0) * 10 + (c - '0'), largestNumber);
      }
    }
    return parameter;
  }

  std::string_view rest_;
  bool ended_ = false;
};

constexpr bool isByte(int value) { return value >= 0 && value <= 255; }

void setPalette(CellColour& colour, int index) {
  if (isByte(index)) colour = CellColour::palette(static_cast<std::uint8_t>(index));
}

void setRgb(CellColour& colour, int red, int green, int blue) {
  if (!isByte(red) || !isByte(green) || !isByte(blue)) return;
  colour = CellColour::rgb(static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                           static_cast<std::uint8_t>(blue));
}

/// "38:5:n", "38:2:r:g:b", "38:2:space:r:g:b" and, as some programs write them, "38::2:…" with an empty
/// place before the kind.
void setColonColour(const Parameter& parameter, CellColour& colour) {
  const auto number = [&](std::size_t i) { return std::max(parameter.numbers[i], 0); };
  std::size_t at = parameter.numbers[1] == absent ? 2 : 1;
  if (at >= parameter.count) return;
  const int kind = number(at++);
  const std::size_t left = parameter.count - at;
  if (kind == 5 && left >= 1) setPalette(colour, number(at));
  if (kind == 2 && left >= 3) {
    if (left >= 4) ++at;
    setRgb(colour, number(at), number(at + 1), number(at + 2));
  }
}

void setLongColour(const Parameter& parameter, ParameterReader& reader, CellColour& colour) {
  if (parameter.count > 1) return setColonColour(parameter, colour);
  Parameter kind;
  if (!reader.next(kind)) return;
  Parameter a;
  Parameter b;
  Parameter c;
  if (kind.first() == 5) {
    if (reader.next(a)) setPalette(colour, a.first());
  } else if (kind.first() == 2) {
    if (reader.next(a) && reader.next(b) && reader.next(c)) setRgb(colour, a.first(), b.first(), c.first());
  }
}

Underline underlineOf(const Parameter& parameter, Underline current) {
  if (parameter.count == 1 || parameter.numbers[1] == absent) return Underline::single;
  const int style = parameter.numbers[1];
  return style <= static_cast<int>(Underline::dashed) ? static_cast<Underline>(style) : current;
}

}  // namespace

void applySgr(std::string_view parameters, CellStyle& style) {
  ParameterReader reader(parameters);
  Parameter parameter;
  while (reader.next(parameter)) {
    const int code = parameter.first();
    const auto base = [code](int from) { return static_cast<std::uint8_t>(code - from); };
    switch (code) {
      case 0:
        style = CellStyle{};
        break;
      case 1:
        style.bold = true;
        break;
      case 2:
        style.dim = true;
        break;
      case 3:
        style.italic = true;
        break;
      case 4:
        style.underline = underlineOf(parameter, style.underline);
        break;
      case 7:
        style.reverse = true;
        break;
      case 8:
        style.hidden = true;
        break;
      case 9:
        style.strike = true;
        break;
      case 21:
        style.underline = Underline::double_;
        break;
      case 22:
        style.bold = style.dim = false;
        break;
      case 23:
        style.italic = false;
        break;
      case 24:
        style.underline = Underline::none;
        break;
      case 27:
        style.reverse = false;
        break;
      case 28:
        style.hidden = false;
        break;
      case 29:
        style.strike = false;
        break;
      case 38:
        setLongColour(parameter, reader, style.foreground);
        break;
      case 39:
        style.foreground = {};
        break;
      case 48:
        setLongColour(parameter, reader, style.background);
        break;
      case 49:
        style.background = {};
        break;
      case 53:
        style.overline = true;
        break;
      case 55:
        style.overline = false;
        break;
      case 58:
        setLongColour(parameter, reader, style.underlineColour);
        break;
      case 59:
        style.underlineColour = {};
        break;
      default:
        if (code >= 30 && code <= 37) style.foreground = CellColour::palette(base(30));
        if (code >= 40 && code <= 47) style.background = CellColour::palette(base(40));
        if (code >= 90 && code <= 97) style.foreground = CellColour::palette(base(82));
        if (code >= 100 && code <= 107) style.background = CellColour::palette(base(92));
    }
  }
}

}  // namespace velmora
