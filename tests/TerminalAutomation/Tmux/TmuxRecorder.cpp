// Runs in a pane in place of a shell: puts the terminal into raw mode and writes every byte that is typed to
// a file. "TmuxRecorder FILE [MODES]" with the modes b (asks for bracketed paste) and a (application cursor
// keys). The file is there, empty, when the program is ready.
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <string_view>

int main(int argumentCount, char** arguments) {
  if (argumentCount < 2) return 2;
  const std::string_view modes = argumentCount > 2 ? arguments[2] : "";
  termios mode{};
  if (tcgetattr(STDIN_FILENO, &mode) != 0) return 3;
  cfmakeraw(&mode);
  tcsetattr(STDIN_FILENO, TCSANOW, &mode);
  const auto print = [](std::string_view text) {
    return write(STDOUT_FILENO, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  };
  if (modes.find('b') != std::string_view::npos && !print("\033[?2004h")) return 4;
  if (modes.find('a') != std::string_view::npos && !print("\033[?1h")) return 4;
  if (!print("recording\r\n")) return 4;
  const int file = open(arguments[1], O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (file < 0) return 5;
  std::array<char, 65536> block;
  ssize_t count = 0;
  while ((count = read(STDIN_FILENO, block.data(), block.size())) > 0) {
    if (write(file, block.data(), static_cast<std::size_t>(count)) != count) return 6;
  }
  return 0;
}
