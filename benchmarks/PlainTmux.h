// A tmux server of a benchmark's own, and tmux run by hand: what the bridge cannot be cheaper than.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

extern char** environ;  // NOLINT: POSIX has no header for it

namespace velmora {

/// Runs tmux the plain way: a pipe in, a pipe out, a wait.
inline std::string byHand(const std::string& socket, const std::vector<std::string>& arguments,
                          const std::string& input = {}) {
  std::array<int, 2> in{};
  std::array<int, 2> out{};
  if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) std::abort();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  std::vector<std::string> words{"tmux", "-u", "-S", socket};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t process = 0;
  if (posix_spawnp(&process, "tmux", &actions, nullptr, pointers.data(), environ) != 0) std::abort();
  posix_spawn_file_actions_destroy(&actions);
  close(in[0]);
  close(out[1]);
  if (write(in[1], input.data(), input.size()) != static_cast<ssize_t>(input.size())) std::abort();
  close(in[1]);
  std::string output;
  std::array<char, 65536> block;
  ssize_t count = 0;
  while ((count = read(out[0], block.data(), block.size())) > 0) {
    output.append(block.data(), static_cast<std::size_t>(count));
  }
  close(out[0]);
  waitpid(process, nullptr, 0);
  return output;
}

/// A server with `panes` shells at their prompts, at the socket where a bridge with TMUX_TMPDIR = `folder()`
/// looks for it. With `lines`, the first one shows a history of so many instead of a shell.
class PlainTmux {
 public:
  PlainTmux(std::int64_t panes, std::int64_t lines) {
    const std::filesystem::path sockets = folder_ / ("tmux-" + std::to_string(::getuid()));
    std::filesystem::create_directory(sockets);
    std::filesystem::permissions(sockets, std::filesystem::perms::owner_all);
    socket_ = sockets / "default";
    std::ofstream(folder_ / "configuration") << "set -g history-limit 300000\n";
    std::ofstream content(folder_ / "content");
    for (std::int64_t i = 1; i <= lines; ++i) content << "line " << i << " of a long history 0123456789\n";
    content.close();
    const std::string first =
        lines > 0 ? "cat " + (folder_ / "content").string() + "; exec sleep 100000" : "exec dash";
    byHand(socket_,
           {"-f", (folder_ / "configuration").string(), "new-session", "-d", "-x", "100", "-y", "40", first});
    for (std::int64_t i = 1; i < panes; ++i)
      byHand(socket_, {"new-window", "-d", i % 2 == 0 ? "exec dash" : "exec bash --norc"});
    const std::string last = "line " + std::to_string(lines) + " ";
    while (lines > 0 && byHand(socket_, {"capture-pane", "-p", "-t", "%0"}).find(last) == std::string::npos) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
  }
  ~PlainTmux() { byHand(socket_, {"kill-server"}); }
  PlainTmux(const PlainTmux&) = delete;
  PlainTmux& operator=(const PlainTmux&) = delete;

  const std::filesystem::path& folder() const { return folder_.path(); }
  const std::string& socket() const { return socket_; }

 private:
  TemporaryDirectory folder_;
  std::string socket_;
};

}  // namespace velmora
