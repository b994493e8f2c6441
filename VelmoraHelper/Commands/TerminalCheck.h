// Whether the program that this system's terminal adapter drives is there. One .cpp file per platform.
#pragma once

#include "VelmoraHelper/Commands/AskProgram.h"
#include "VelmoraHelper/Commands/Check.h"

namespace velmora {

Check checkTerminalProgram(const ProgramAsking& askProgram);

}  // namespace velmora
