// The shell of a window that keeps apart what runs in it, by bubblewrap: it has process numbers of its own,
// no other terminal's device, and none of the sockets and folders by which another window could be reached.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "System/Environment.h"

namespace velmora {

/// What a contained window does not see.
struct ContainedFrom {
  std::filesystem::path tmuxSocket;
  std::vector<std::filesystem::path> folders;  ///< Those that are not there are left out.
};

/// The program `bubblewrap` and its arguments, up to those of the program that it is to run. Any thread.
std::vector<std::string> containing(const std::filesystem::path& bubblewrap, const ContainedFrom& from);

/// The words of a command that starts the user's default shell, contained, in a pane. Starts another program
/// in the same way first, to learn whether this system allows it. Throws a StructuredError when it does not,
/// or when bubblewrap is not installed.
std::vector<std::string> containedShell(const Environment& environment, const ContainedFrom& from,
                                        std::chrono::steady_clock::time_point deadline);

}  // namespace velmora
