// Where the programs' log goes: to standard error, as whoever reads it there expects it.
#pragma once

#include "System/Environment.h"
#include "System/Log.h"

namespace velmora {

/// Makes standard error the place of all that is logged, through the returned log as well as through spdlog
/// itself. Each line says when it was written and how grave it is; systemd's journal, which keeps the time
/// itself, gets the priority as it reads it ("<4>"). For `main`, before other threads start.
Log programLog(const Environment& environment);

/// Whether what is written to `descriptor` goes to systemd's journal, which says so in JOURNAL_STREAM.
bool isJournal(const Environment& environment, int descriptor);

}  // namespace velmora
