// What a shell notes about its last command, in a file of its terminal's.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Beside the bridge's socket, from the runtime folder on: the folder of the records, which the bridge makes.
inline constexpr auto shellRecordFolder = "app.velmora.Velmora/shells";

struct ShellRecord {
  pid_t process = 0;            ///< Of the shell.
  std::int64_t startTicks = 0;  ///< When that process started, as the system counts; 0 if it does not tell.
  std::int64_t instance = 0;    ///< Differs between the shells that one process is, one after the other.
  std::int64_t number = 0;      ///< Of the last command, from 1 on; 0 before the first.
  std::optional<int> status{};  ///< The command's exit status, 0 to 255; the shell may not know it.
  std::int64_t began = 0;       ///< In microseconds since 1970, as the next; 0 where the shell has no clock.
  std::int64_t ended = 0;

  bool operator==(const ShellRecord&) const = default;
};

/// The one line "1 PROCESS TICKS INSTANCE NUMBER STATUS BEGAN ENDED" with blanks at its end, STATUS a number
/// or "-"; nothing for anything else. Pure.
std::optional<ShellRecord> parseShellRecord(std::string_view text);

/// The record of the terminal, such as "/dev/pts/3"; nothing unless a regular file stands there that belongs
/// to this user, that nobody else may write, and that holds a record. Never waits. Any thread.
std::optional<ShellRecord> readShellRecord(const std::filesystem::path& runtimeFolder, std::string_view tty);

}  // namespace velmora
