#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "TerminalAutomation/Tmux/Direct/TmuxMessageReader.h"
#include "tests/TerminalAutomation/Tmux/Direct/ServerBytes.h"

namespace velmora {
namespace {

using testing::exited;
using testing::message;
using testing::numbers;
using testing::terminated;
using Type = TmuxMessageType;
using namespace std::string_literals;

/// Each message as "type stream descriptor rest", after the bytes came in parts of this size.
std::vector<std::string> read(std::string_view bytes, std::size_t part = 65'536) {
  TmuxMessageReader reader;
  std::vector<std::string> messages;
  while (!bytes.empty()) {
    const auto space = reader.space();
    const std::size_t count = std::min({part, space.size(), bytes.size()});
    EXPECT_GT(count, 0u);
    std::copy_n(bytes.begin(), count, space.begin());
    bytes.remove_prefix(count);
    reader.received(count);
    while (const auto next = reader.next()) {
      messages.push_back(std::to_string(static_cast<int>(next->type)) + " " + std::to_string(next->stream) +
                         " " + std::to_string(next->descriptor) + " " + std::string(next->rest));
    }
  }
  return messages;
}

std::string refusal(std::string_view bytes) {
  try {
    read(bytes);
  } catch (const TmuxUnexpected& unexpected) {
    return unexpected.what();
  }
  return "";
}

const std::string conversation =
    message(Type::flags, numbers({1, 2})) + testing::writeOpen(1, 1) + testing::write(1, "output\0more"s) +
    testing::readOpen(3, 0) + message(Type::readCancel, numbers({3})) +
    message(Type::writeClose, numbers({1})) + message(Type::exit, numbers({1}) + terminated("last words"));
const std::vector<std::string> conversationRead{"218 1 2 ", "303 1 1 -", "304 1 0 output\0more"s, "300 3 0 -",
                                                "307 3 0 ", "306 1 0 ",  "203 1 0 last words"};

TEST(TmuxMessageReader, TakesEveryMessageApart) { EXPECT_EQ(read(conversation), conversationRead); }

TEST(TmuxMessageReader, FindsTheMessagesHoweverTheBytesWereCut) {
  for (std::size_t part = 1; part < conversation.size(); ++part)
    EXPECT_EQ(read(conversation, part), conversationRead);
}

TEST(TmuxMessageReader, WaitsForTheRestOfAMessage) {
  for (std::size_t cut = 0; cut < exited().size(); ++cut)
    EXPECT_TRUE(read(exited().substr(0, cut)).empty()) << cut;
}

TEST(TmuxMessageReader, ReadsOnForEver) {
  std::string bytes;
  for (int count = 0; count < 40; ++count) bytes += testing::write(1, std::string(16'384 - 20, 'x'));
  for (const std::size_t part : {1'000u, 16'384u, 65'536u}) EXPECT_EQ(read(bytes, part).size(), 40u);
}

TEST(TmuxMessageReader, TakesTheShorterShapesThatServersMaySend) {
  EXPECT_EQ(read(message(Type::exit, "")), std::vector<std::string>{"203 0 0 "});
  EXPECT_EQ(read(message(Type::shutdown, "")), std::vector<std::string>{"210 0 0 "});
  EXPECT_EQ(read(message(Type::readOpen, numbers({3, 0}))), std::vector<std::string>{"300 3 0 "});
  EXPECT_EQ(read(message(Type::writeOpen, numbers({3, 1, 0}))), std::vector<std::string>{"303 3 1 "});
  EXPECT_EQ(read(message(Type::write, numbers({3}))), std::vector<std::string>{"304 3 0 "});
}

TEST(TmuxMessageReader, RefusesALengthThatNoMessageHas) {
  for (const std::uint32_t length : {0u, 15u, 16'385u, 0x1'0018u, 0x8000'0018u, 0xffff'ffffu}) {
    const std::string header = testing::rawBytes(Type::exit) + testing::rawBytes(length) + numbers({8, 1});
    EXPECT_EQ(refusal(header), "the server sent a message of a wrong length (message 203)") << length;
  }
}

TEST(TmuxMessageReader, RefusesAnotherVersionOfTheProtocol) {
  const std::string words = "the server speaks another version of the protocol";
  for (const std::uint32_t protocol : {0u, 7u, 9u, 0x108u}) {
    EXPECT_EQ(refusal(message(Type::exit, numbers({0}), protocol)), words) << protocol;
  }
  EXPECT_EQ(refusal(message(Type::version, "")), words);
}

TEST(TmuxMessageReader, RefusesEveryTypeThatIsNotForAClientWithoutASession) {
  for (std::uint32_t type = 0; type < 1'000; ++type) {
    const bool known = type == 203 || type == 210 || type == 218 || type == 300 || type == 303 ||
                       type == 304 || type == 306 || type == 307;
    const std::string refused = refusal(message(static_cast<Type>(type), numbers({1, 2, 3, 4})));
    if (type == 12) {
      EXPECT_NE(refused, "");
    } else {
      EXPECT_EQ(
          refused == "the server sent a message that is not known (message " + std::to_string(type) + ")",
          !known)
          << type << refused;
    }
  }
}

TEST(TmuxMessageReader, RefusesABodyThatDoesNotFitItsType) {
  EXPECT_NE(refusal(message(Type::exit, "abc")), "");
  EXPECT_NE(refusal(message(Type::exit, numbers({0}) + "no end")), "");
  EXPECT_NE(refusal(message(Type::flags, numbers({1}))), "");
  EXPECT_NE(refusal(message(Type::flags, numbers({1, 2, 3}))), "");
  EXPECT_NE(refusal(message(Type::flags, "")), "");
  EXPECT_NE(refusal(message(Type::readOpen, numbers({1}))), "");
  EXPECT_NE(refusal(message(Type::readOpen, numbers({1, 0}) + "-")), "");
  EXPECT_NE(refusal(message(Type::writeOpen, numbers({1, 1}))), "");
  EXPECT_NE(refusal(message(Type::writeOpen, numbers({1, 1, 0}) + "-")), "");
  EXPECT_NE(refusal(message(Type::write, "abc")), "");
  EXPECT_NE(refusal(message(Type::write, "")), "");
  EXPECT_NE(refusal(message(Type::writeClose, numbers({1, 0}))), "");
  EXPECT_NE(refusal(message(Type::readCancel, "")), "");
}

}  // namespace
}  // namespace velmora
