// `velmora`: an MCP client launches it, speaks MCP to its standard input and output, and so reaches the
// running application. Nothing but MCP goes to standard output; messages for the user go to standard
// error. With arguments it runs one command and ends.
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string_view>

#include "LocalControl/UnixSocketEndpoint.h"
#include "System/Environment.h"
#include "VelmoraHelper/Bridge/BridgeContact.h"
#include "VelmoraHelper/Commands/CommandLine.h"
#include "VelmoraHelper/Commands/SystemContext.h"
#include "VelmoraHelper/Stdio/StdioLoop.h"

namespace velmora {

namespace {

// The program may be launched with some of the three standard descriptors closed; the next file that is
// opened would take the free number, and what is printed must not end up in it or in the application's
// socket.
void occupyStandardDescriptors() {
  for (int descriptor = ::open("/dev/null", O_RDWR); descriptor >= 0;
       descriptor = ::open("/dev/null", O_RDWR)) {
    if (descriptor <= STDERR_FILENO) continue;
    ::close(descriptor);
    break;
  }
}

// A client may have blocked or ignored the signals that end this program; they are inherited.
void resetSignals() {
  sigset_t none;
  sigemptyset(&none);  // a macro on macOS
  sigprocmask(SIG_SETMASK, &none, nullptr);
  std::signal(SIGTERM, SIG_DFL);
  std::signal(SIGPIPE, SIG_IGN);
}

std::size_t largestInlinePicture(const Environment& environment, std::size_t usual) {
  constexpr const char* variable = "VELMORA_INLINE_IMAGE_BYTES";
  if (!environment.contains(variable)) return usual;
  const auto stated = environmentValue(environment, variable);
  std::size_t bytes = 0;
  const auto* end = stated.data() + stated.size();
  const auto [rest, error] = std::from_chars(stated.data(), end, bytes);
  if (error == std::errc() && rest == end && !stated.empty()) return bytes;
  std::fprintf(stderr, "velmora: VELMORA_INLINE_IMAGE_BYTES must be a number of bytes; %zu is used.\n",
               usual);
  return usual;
}

int serve(bool asksForExtended) {
  resetSignals();
  if (::isatty(STDIN_FILENO) == 1) {
    std::fputs(
        "velmora speaks the Model Context Protocol on standard input and output, for an MCP client to "
        "launch.\n"
        "Type JSON-RPC messages, one a line, or press Control-D to leave; velmora --help says more.\n",
        stderr);
  }
  const auto environment = processEnvironment();
  const auto client = ::getppid();
  McpServer::Options options{.version = VELMORA_VERSION, .clientProcessId = client};
  // A client that keeps an environment for its servers may find the variable easier than an argument.
  const auto variable = environmentValue(environment, "VELMORA_EXTENDED");
  if (asksForExtended || (!variable.empty() && variable != "0")) options.form = ToolForm::extended;
  options.largestInlinePicture = largestInlinePicture(environment, options.largestInlinePicture);

  // The places are named anew for each connection: the user's own directory may have come meanwhile.
  BridgeCalls calls(
      [&environment] { return contactBridge(UnixSocketEndpoint::places(environment)).connection; });
  MessageOutput output(STDOUT_FILENO);
  McpServer server(
      std::move(options), calls, Uuid::random, [&output](const std::string& message) { output.add(message); },
      HelperLog(environment.contains("VELMORA_LOG")));
  try {
    // Once the client has gone, this process has another parent.
    serveLines(STDIN_FILENO, output, server, calls, [client] { return ::getppid() != client; });
  } catch (const std::exception& error) {
    std::fprintf(stderr, "velmora: %s\n", error.what());
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}

}  // namespace

}  // namespace velmora

int main(int argc, char** argv) {
  velmora::occupyStandardDescriptors();
  const bool asksForExtended = argc == 2 && std::string_view(argv[1]) == velmora::extendedOption;
  if (argc <= 1 || asksForExtended) return velmora::serve(asksForExtended);
  std::setlocale(LC_CTYPE, "");  // how wide the user's characters are
  const auto context = velmora::systemContext(VELMORA_VERSION, argv[0], velmora::processEnvironment());
  return velmora::runCommandLine(context, {argv + 1, argv + argc});
}
