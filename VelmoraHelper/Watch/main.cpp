// `velmora-watch`: the screen of `velmora watch`, which starts it. A program of its own, so that the one that
// MCP clients launch loads no terminal library.
#include <clocale>
#include <cstdio>

#include "LocalControl/UnixSocketEndpoint.h"
#include "VelmoraHelper/Commands/SystemContext.h"
#include "VelmoraHelper/Watch/CursesTerminal.h"
#include "VelmoraHelper/Watch/WatchLoop.h"

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  if (argc != 1) {
    std::fputs("velmora-watch: takes no arguments; `velmora watch` starts it\n", stderr);
    return static_cast<int>(velmora::ExitStatus::usage);
  }
  const auto environment = velmora::processEnvironment();
  try {
    const auto context = velmora::systemContext(VELMORA_VERSION, argv[0], environment);
    return static_cast<int>(
        watchOnScreen(context, velmora::UnixSocketEndpoint::places(environment), environment));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "velmora watch: %s\n", error.what());
    return static_cast<int>(velmora::ExitStatus::failure);
  }
}
