#include "LocalControl/UserPresence.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <system_error>

#include "System/FileDescriptor.h"

namespace velmora {

void showOnTerminal(const std::filesystem::path& terminal, std::string_view text) {
  const auto device = openFile(terminal, O_WRONLY | O_NOCTTY | O_NONBLOCK);
  struct stat status {};
  if (::isatty(device.get()) != 1 || ::fstat(device.get(), &status) != 0 || status.st_uid != ::geteuid())
    throw std::system_error(EPERM, std::generic_category(), terminal.string());
  if (!writeTo(device, text).empty())
    throw std::system_error(errno, std::generic_category(), terminal.string());
}

std::string randomWord() {
  constexpr std::string_view letters =
      "bcdfghjkmnpqrstvwxz";  // they spell nothing, and none looks like another
  std::random_device source;
  std::uniform_int_distribution<std::size_t> position(0, letters.size() - 1);
  std::string word(4, ' ');
  for (char& letter : word) letter = letters[position(source)];
  return word;
}

}  // namespace velmora
