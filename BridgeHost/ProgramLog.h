// Where the programs' log goes: to standard error, as whoever reads it there expects it.
#pragma once

#include "System/Environment.h"
#include "System/Log.h"

namespace velmora {

/// Writes to standard error. Each line says when it was written and how grave it is; systemd's journal, which
/// keeps the time itself, gets the priority as it reads it ("<4>"). Lines of the level `debug` are not shown.
/// Nobody waits for a reader: what standard error has no room for is left out, and the next line that finds
/// room says how many were. Any thread.
Log programLog(const Environment& environment);

/// Whether what is written to `descriptor` goes to systemd's journal, which says so in JOURNAL_STREAM.
bool isJournal(const Environment& environment, int descriptor);

}  // namespace velmora
