// What the tests of the channel share: a pair of connected ends, samples of the records, modes of files.
#pragma once

#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "LocalControl/LocalControlMessages.h"
#include "LocalControl/UnixSocketConnection.h"
#include "LocalControl/UnixSocketError.h"

namespace velmora {

inline std::pair<UnixSocketConnection, UnixSocketConnection> connectedPair() {
  std::array<int, 2> ends{};
  EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
  return {UnixSocketConnection(FileDescriptor(ends[0])), UnixSocketConnection(FileDescriptor(ends[1]))};
}

/// The error of type `Error` that `action` throws, or nothing.
template <class Error, class Action>
std::optional<Error> errorOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error;
  }
  return std::nullopt;
}

/// Gives other threads their turn until `condition` holds; CTest's time limit ends a wait in vain.
template <class Condition>
void yieldUntil(Condition condition) {
  while (!condition()) std::this_thread::yield();
}

/// How many bytes wait to be read.
inline int waitingBytes(int descriptor) {
  int count = -1;
  EXPECT_EQ(::ioctl(descriptor, FIONREAD, &count), 0);
  return count;
}

inline LocalControlRequest sampleRequest(const std::string& text = "ls -l") {
  LocalControlRequest request;
  request.requestId = *Uuid::parse("0f8fad5b-d9cb-469f-a165-70867728950e");
  request.client = {"Agent", "1.2.3", 4711};
  request.operation = ToolName::sendCommand;
  request.arguments = {{"command", text}, {"sessionId", "7C9E6679-7425-40DE-944B-E07FC1F90AE7"}};
  return request;
}

inline LocalControlResponse sampleResponse() {
  LocalControlResponse response;
  response.requestId = sampleRequest().requestId;
  response.ok = true;
  response.data = JSONObject{{"deliveryStatus", "delivered_to_terminal"}, {"deliveredAt", 815905560.25}};
  return response;
}

inline std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline mode_t modeOf(const std::filesystem::path& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

}  // namespace velmora
