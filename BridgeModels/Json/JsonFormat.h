// The forms of JSON that are written and read.
#pragma once

namespace velmora {

struct JsonFormat {
  enum class Dates {
    seconds,               ///< A number: seconds since 2001-01-01T00:00:00Z.
    text,                  ///< "2026-11-21T07:26:00Z": whole seconds, cut towards the past.
    textWithMilliseconds,  ///< "2026-11-21T07:26:00.250Z"
  };

  bool pretty = false;  ///< Indented, a member a line; else compact.
  bool sorted = false;  ///< A record's keys in the order of their names; else in that of its fields.
  Dates dates = Dates::seconds;

  static const JsonFormat wire;    ///< What travels between the programs.
  static const JsonFormat store;   ///< The settings and history files.
  static const JsonFormat people;  ///< What agents and people read.
};

inline constexpr JsonFormat JsonFormat::wire{};
inline constexpr JsonFormat JsonFormat::store{.pretty = true, .sorted = true, .dates = Dates::text};
inline constexpr JsonFormat JsonFormat::people{.dates = Dates::textWithMilliseconds};

}  // namespace velmora
