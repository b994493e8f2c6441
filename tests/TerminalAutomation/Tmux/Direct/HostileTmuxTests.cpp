// Servers that say anything: the client always comes back in time, with an answer or a reason, and holds
// nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "TerminalAutomation/Tmux/Direct/TmuxDirectClient.h"
#include "tests/TerminalAutomation/Tmux/Direct/FakeTmux.h"
#include "tests/support/Files.h"

namespace velmora {
namespace {

using testing::FakeTmux;
using testing::FakeTmuxClient;
using testing::numbers;
using testing::terminated;
using Type = TmuxMessageType;
using namespace std::chrono_literals;

class Chance {
 public:
  explicit Chance(unsigned seed) : engine_(seed) {}

  /// 0 to `below` - 1.
  unsigned number(unsigned below) { return static_cast<unsigned>(engine_() % below); }
  bool onceIn(unsigned times) { return number(times) == 0; }

  template <class Value>
  Value oneOf(std::initializer_list<Value> values) {
    return *(values.begin() + number(static_cast<unsigned>(values.size())));
  }
  std::string bytes(unsigned most) {
    std::string text(number(most), '\0');
    for (char& byte : text) byte = static_cast<char>(number(256));
    return text;
  }

 private:
  std::mt19937 engine_;
};

std::string randomMessage(Chance& chance) {
  const auto type = static_cast<Type>(
      chance.onceIn(5)
          ? chance.number(400)
          : chance.oneOf<unsigned>({12, 203, 210, 218, 300, 301, 302, 303, 304, 305, 306, 307, 207}));
  const std::int32_t stream = chance.oneOf({0, 1, 2, 3, -1, 77});
  const std::int32_t descriptor = chance.oneOf({0, 1, 2, -1, 77});
  std::string body;
  switch (chance.number(7)) {
    case 0:
      break;
    case 1:
      body = numbers({stream});
      break;
    case 2:
      body = numbers({stream, descriptor});
      break;
    case 3:
      body = numbers({stream, descriptor, 0});
      break;
    case 4:
      body = numbers({stream, descriptor, 0}) + terminated("/etc/passwd");
      break;
    case 5:
      body = numbers({stream}) + chance.bytes(3'000);
      break;
    default:
      body = chance.bytes(40);
  }
  const std::uint32_t protocol = chance.onceIn(12) ? 9 : 8;
  const std::uint32_t tooLong =
      chance.onceIn(12) ? chance.oneOf<std::uint32_t>({1, 100, 16'385, 0x8000'0000, 0xffff'fff0}) : 0;
  return testing::message(type, body, protocol, tooLong);
}

/// What one server says: some messages, sometimes with a bit changed, sometimes cut off.
std::string randomWords(Chance& chance) {
  std::string words;
  for (unsigned count = chance.number(8) + 1; count > 0; --count) words += randomMessage(chance);
  if (chance.onceIn(3))
    words[chance.number(static_cast<unsigned>(words.size()))] ^= static_cast<char>(1u << chance.number(8));
  if (chance.onceIn(3)) words.resize(chance.number(static_cast<unsigned>(words.size())));
  return words;
}

TEST(HostileTmux, NeverHoldsTheClientNorLeavesAnythingBehind) {
  constexpr unsigned servers = 2'000;
  unsigned seed = 0;
  FakeTmux server([&](FakeTmuxClient& client) {
    Chance chance(++seed);
    if (!chance.onceIn(5)) client.await(Type::command);
    std::string_view words;
    const std::string all = randomWords(chance);
    for (words = all; !words.empty();) {
      const std::string_view part = words.substr(0, chance.oneOf({1u, 7u, 16u, 100u, 5'000u}));
      if (!client.say(part)) return;
      words.remove_prefix(part.size());
    }
    if (chance.onceIn(10)) client.awaitEnd();
  });
  TmuxDirectClient client(server.socket(), "", "/");
  std::map<TmuxAnswer::End, unsigned> ends;
  std::size_t descriptors = 0;
  for (unsigned call = 0; call < servers; ++call) {
    if (call == 100) descriptors = testing::namesIn("/proc/self/fd").size();
    const auto start = std::chrono::steady_clock::now();
    const TmuxDirectResult result = client.ask({.arguments = {"list-panes"},
                                                .standardInput = "never read",
                                                .deadline = start + 100ms,
                                                .outputLimit = 10'000},
                                               ::getpid());
    ASSERT_LT(std::chrono::steady_clock::now() - start, 10s) << "server " << call;
    ASSERT_EQ(result.reach, TmuxDirectResult::Reach::spoken);
    ASSERT_LE(result.exchange.answer.output.size(), 10'000u);
    ++ends[result.exchange.answer.end];
  }
  EXPECT_LE(testing::namesIn("/proc/self/fd").size(), descriptors + 1);
  EXPECT_GT(ends[TmuxAnswer::End::exited], 0u);
  EXPECT_GT(ends[TmuxAnswer::End::timedOut], 0u);
  EXPECT_EQ(server.connections, static_cast<int>(servers));
}

}  // namespace
}  // namespace velmora
