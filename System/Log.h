// What a program says about itself to whoever looks after it: one line at a time, to the place that its
// `main` chooses. Never what passes through the bridge: no command, output, key or title.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace velmora {

enum class LogLevel { debug, info, warning, error };

/// Takes one line. `area` is a word that says what the line is about: "socket", "history". Called from any
/// thread, several at once; must not throw.
using LogSink = std::function<void(LogLevel level, std::string_view area, std::string_view words)>;

/// Handed in through constructors and copied freely; without a sink it says nothing. Thread-safe. Whatever
/// the words hold, they stay one line without control characters.
class Log {
 public:
  Log() = default;
  explicit Log(LogSink sink) : sink_(std::move(sink)) {}

  void debug(std::string_view area, std::string_view words) const { write(LogLevel::debug, area, words); }
  void info(std::string_view area, std::string_view words) const { write(LogLevel::info, area, words); }
  void warning(std::string_view area, std::string_view words) const { write(LogLevel::warning, area, words); }
  void error(std::string_view area, std::string_view words) const { write(LogLevel::error, area, words); }

 private:
  void write(LogLevel level, std::string_view area, std::string_view words) const;

  LogSink sink_;
};

/// A stranger's text as part of a line: in quotation marks, with no others inside, and cut short after 64
/// bytes, so that it can neither pass for the program's own words nor push them out of sight.
std::string quotedForLog(std::string_view text);

}  // namespace velmora
