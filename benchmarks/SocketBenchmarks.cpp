// A call over the real socket that needs no terminal, against a bare exchange of the same bytes.
#include <sys/socket.h>

#include <thread>

#include "LocalControl/LocalControlClient.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/LocalControlServer.h"
#include "benchmarks/FakeBridge.h"
#include "benchmarks/SideBySide.h"

namespace velmora {
namespace {

void readAll(int descriptor, std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const auto count = ::read(descriptor, bytes.data() + done, bytes.size() - done);
    if (count <= 0) throw std::runtime_error("the exchange broke off");
    done += static_cast<std::size_t>(count);
  }
}

void writeAll(int descriptor, const std::string& bytes) {
  if (::write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("the exchange broke off");
  }
}

// Two threads that know how many bytes they get: one read and one write each.
class PingPong {
 public:
  PingPong(std::string ping, std::string pong) : ping_(std::move(ping)), received_(pong.size(), '\0') {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) throw std::runtime_error("socketpair");
    near_ = FileDescriptor(ends[0]);
    answering_ = std::thread([far = FileDescriptor(ends[1]), size = ping_.size(), pong = std::move(pong)] {
      std::string buffer(size, '\0');
      try {
        while (true) {
          readAll(far.get(), buffer);
          writeAll(far.get(), pong);
        }
      } catch (const std::runtime_error&) {
        // The other end has closed.
      }
    });
  }
  ~PingPong() {
    near_.close();
    answering_.join();
  }

  void exchange() {
    writeAll(near_.get(), ping_);
    readAll(near_.get(), received_);
  }

 private:
  const std::string ping_;
  std::string received_;
  FileDescriptor near_;
  std::thread answering_;
};

void roundTrip(benchmark::State& state, LocalControlRequest (*requestFor)(const FakeBridge&)) {
  FakeBridge bridge;
  LocalControlServer server(
      [&](auto request, const auto& caller) { return bridge.router.answer(request, caller); },
      bridge.directory / "s");
  server.start();
  const auto request = requestFor(bridge);
  LocalControlClient client(bridge.directory / "s");
  PingPong pingPong(LocalControlCodec::frame(request), LocalControlCodec::frame(client.send(request)));
  constexpr int inARow = 100;
  const auto result = runSideBySide(
      state, inARow, [&] { benchmark::DoNotOptimize(client.send(request)); }, [&] { pingPong.exchange(); });
  report(state, result, Compare::ratio, /*budget=*/3);
}
BENCHMARK_CAPTURE(roundTrip, anotherVersion, [](const FakeBridge& bridge) {
  return bridge.ofAnotherVersion();
})->UseManualTime();
BENCHMARK_CAPTURE(roundTrip, badArguments, [](const FakeBridge& bridge) {
  return bridge.withBadArguments();
})->UseManualTime();

}  // namespace
}  // namespace velmora
