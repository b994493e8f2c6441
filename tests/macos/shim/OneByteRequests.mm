// For VelmoraScriptHost/main.mm: requests of one byte, each answered with the next letter; "q" is none. What
// a library would print goes to standard output.
#include <unistd.h>

#include <cstdio>

#import "FakeSystem.h"
#include "TerminalAutomation/AppleScript/ScriptFrames.h"

namespace velmora {

bool answerScriptRequest(ScriptEngine&, int input, int output) {
  char byte = 0;
  if (::read(input, &byte, 1) != 1 || byte == 'q') return false;
  for (const auto& what : fakeSystem.done) std::printf("%s\n", what.c_str());
  std::fflush(stdout);
  fakeSystem.done.clear();
  ++byte;
  return ::write(output, &byte, 1) == 1;
}

}  // namespace velmora
