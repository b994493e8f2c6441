// `velmora`: an MCP client launches it, speaks MCP to its standard input and output, and so reaches the
// running application. Nothing but MCP goes to standard output; what people should read goes to standard
// error.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>

#include "BridgeModels/Environment.h"
#include "LocalControl/LocalControlClient.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "VelmoraHelper/StdioLoop.h"

namespace velmora {

namespace {

// A new connection a call: whichever application serves the socket then is the one that answers, also when it
// was started or restarted after this helper.
LocalControlResponse callApplication(const Environment& environment, const LocalControlRequest& request) {
  return LocalControlClient(UnixSocketEndpoint::defaultURL(environment)).send(request);
}

int serve() {
  std::signal(SIGPIPE, SIG_IGN);
  if (::isatty(STDIN_FILENO) == 1) {
    std::fputs(
        "velmora speaks the Model Context Protocol on standard input and output, for an MCP client to "
        "launch.\n"
        "Type JSON-RPC messages, one a line, or press Control-D to leave; velmora --help says more.\n",
        stderr);
  }
  const auto environment = processEnvironment();
  const auto bridge = [&environment](const LocalControlRequest& request) {
    return callApplication(environment, request);
  };
  McpServer server({.version = VELMORA_VERSION, .clientProcessId = ::getppid()},
                   ToolCaller(bridge, Uuid::random));
  try {
    serveLines(STDIN_FILENO, STDOUT_FILENO, server);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "velmora: %s\n", error.what());
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}

}  // namespace

}  // namespace velmora

int main(int argc, char** argv) {
  if (argc > 1) {
    CLI::App app(
        "Lets an MCP client work in your terminal through Velmora.\n"
        "Without arguments it serves MCP on standard input and output; the client launches it that way.",
        "velmora");
    app.set_version_flag("--version", std::string("velmora ") + VELMORA_VERSION);
    CLI11_PARSE(app, argc, argv);
  }
  return velmora::serve();
}
