#include "BridgeHost/OtherBridge.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

#include "LocalControl/UnixSocketClient.h"
#include "System/SocketPlatform.h"

namespace velmora {

std::optional<OtherBridge> otherBridgeAt(const std::filesystem::path& socketURL) {
  try {
    const auto connection = UnixSocketClient::connectWithoutBlocking(socketURL);
    OtherBridge other{.process = SocketPlatform::peerProcess(connection.descriptor())};
    if (other.process) other.about = runningProcess(*other.process).value_or(RunningProcess{});
    return other;
  } catch (const UnixSocketError& error) {
    const bool isBusy = error.operation() == "connect" &&
                        SocketPlatform::listenerQueue(error.code()) == SocketPlatform::ListenerQueue::full;
    return isBusy ? std::optional(OtherBridge{}) : std::nullopt;
  }
}

void endOtherBridge(const std::function<std::optional<OtherBridge>()>& find, std::optional<pid_t> process,
                    std::chrono::milliseconds patience) {
  const auto other = find();
  if (!other) return;
  if (!other->process) throw std::runtime_error("Velmora cannot tell which process it is.");
  if (other->process != process || *process == ::getpid())
    throw std::runtime_error("Meanwhile another process serves there.");
  const auto name = "Process " + std::to_string(*process);
  if (::kill(*process, SIGTERM) != 0)
    throw std::runtime_error(name + " cannot be ended: " + std::generic_category().message(errno) + ".");
  const auto end = std::chrono::steady_clock::now() + patience;
  while (runningProcess(*process)) {
    if (std::chrono::steady_clock::now() > end)
      throw std::runtime_error(name + " was asked to end and has not.");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

}  // namespace velmora
