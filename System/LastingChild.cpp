#include "System/LastingChild.h"

#include <signal.h>
#include <unistd.h>

#include <system_error>
#include <utility>

#include "System/SpawnChild.h"

namespace velmora {

LastingChild::LastingChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                           const std::vector<std::string>& environment) {
  Pipe input = openPipe();
  Pipe output = openPipe();
  setNonBlocking(input.write);
  setNonBlocking(output.read);
  const int error = spawnChild({.program = program,
                                .arguments = arguments,
                                .environment = environment,
                                .input = input.read.get(),
                                .output = output.write.get(),
                                .error = STDERR_FILENO},
                               process_);
  if (error != 0) throw std::system_error(error, std::generic_category(), program.string());
  input_ = std::move(input.write);
  output_ = std::move(output.read);
}

LastingChild::~LastingChild() {
  ::kill(process_, SIGKILL);
  reapChild(process_);
}

}  // namespace velmora
