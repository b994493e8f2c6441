#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "TerminalAutomation/Tmux/Direct/TmuxConversation.h"
#include "tests/TerminalAutomation/Tmux/Direct/ServerBytes.h"

namespace velmora {
namespace {

using testing::exited;
using testing::message;
using testing::numbers;
using testing::readOpen;
using testing::terminated;
using testing::write;
using testing::writeOpen;
using End = TmuxAnswer::End;
using Type = TmuxMessageType;

class TmuxConversationTest : public ::testing::Test {
 protected:
  TmuxConversation& begin(std::optional<std::string> input = std::nullopt, std::size_t outputLimit = 1'000) {
    invocation_ = {.arguments = {"list-panes"},
                   .standardInput = std::move(input),
                   .deadline = {},
                   .outputLimit = outputLimit};
    conversation_.emplace(invocation_, TmuxClientIdentity{.process = 1});
    conversation_->sent(conversation_->unsent().size());
    return *conversation_;
  }

  /// What is to be sent after the server has said `bytes`.
  std::string hear(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto space = conversation_->space();
      const std::size_t count = std::min(space.size(), bytes.size());
      std::copy_n(bytes.begin(), count, space.begin());
      bytes.remove_prefix(count);
      conversation_->received(count);
    }
    std::string said(conversation_->unsent());
    conversation_->sent(said.size());
    return said;
  }

  /// What the client would say by `write`.
  template <class Write>
  static std::string said(Write write) {
    TmuxMessageWriter writer(1);
    write(writer);
    return std::string(writer.unsent());
  }
  static std::string ready(std::int32_t stream, std::int32_t error) {
    return said([&](TmuxMessageWriter& writer) { writer.writeReady(stream, error); });
  }
  static std::string done(std::int32_t stream, std::int32_t error) {
    return said([&](TmuxMessageWriter& writer) { writer.readDone(stream, error); });
  }

  TmuxInvocation invocation_;
  std::optional<TmuxConversation> conversation_;
};

TEST_F(TmuxConversationTest, OpensWithTheIdentificationAndTheCommand) {
  const TmuxInvocation invocation{.arguments = {"list-panes", "-a"}, .deadline = {}};
  const TmuxClientIdentity identity{.process = 7, .terminal = "xterm", .folder = "/"};
  TmuxConversation conversation(invocation, identity);
  TmuxMessageWriter writer(7);
  writer.identify(identity);
  writer.command(invocation.arguments);
  EXPECT_EQ(conversation.unsent(), writer.unsent());
}

TEST_F(TmuxConversationTest, KnowsWhenTheCommandMayHaveLeft) {
  const TmuxInvocation invocation{.arguments = {"list-panes"}, .deadline = {}};
  TmuxConversation conversation(invocation, {.process = 1});
  conversation.sent(conversation.unsent().size() - 1);
  EXPECT_FALSE(conversation.commandMayHaveLeft()) << "a server waits for the last byte";
  conversation.sent(1);
  EXPECT_TRUE(conversation.commandMayHaveLeft());
}

TEST_F(TmuxConversationTest, CollectsOutputErrorsAndStatus) {
  TmuxConversation& conversation = begin();
  EXPECT_EQ(hear(writeOpen(1, 1)), ready(1, 0));
  hear(write(1, "one ") + write(1, "two"));
  EXPECT_EQ(hear(writeOpen(2, 2)), ready(2, 0));
  hear(write(2, "bad\n") + write(1, "three"));
  EXPECT_FALSE(conversation.ended());
  hear(exited(1));
  EXPECT_TRUE(conversation.ended());
  EXPECT_EQ(conversation.answer().end, End::exited);
  EXPECT_EQ(conversation.answer().exitStatus, 1);
  EXPECT_EQ(conversation.answer().output, "one twothree");
  EXPECT_EQ(conversation.answer().errorOutput, "bad\n");
}

TEST_F(TmuxConversationTest, TakesTheServersLastWordsForAnError) {
  begin();
  hear(message(Type::exit, numbers({0}) + terminated("access not allowed")));
  EXPECT_EQ(conversation_->answer().exitStatus, 0);
  EXPECT_EQ(conversation_->answer().errorOutput, "access not allowed\n");
}

TEST_F(TmuxConversationTest, EndsWithTheServer) {
  begin();
  hear(message(Type::shutdown, ""));
  EXPECT_TRUE(conversation_->ended());
  EXPECT_EQ(conversation_->answer().exitStatus, 0);
}

TEST_F(TmuxConversationTest, HearsNothingAfterTheEnd) {
  begin();
  hear(exited(3) + message(static_cast<Type>(999), ""));
  EXPECT_EQ(conversation_->answer().exitStatus, 3);
}

TEST_F(TmuxConversationTest, GivesTheInputOnceWhenItIsAskedFor) {
  begin("text");
  EXPECT_EQ(hear(readOpen(3, 0)), said([](TmuxMessageWriter& writer) { writer.input(3, "text"); }));
  EXPECT_EQ(hear(readOpen(4, 0)), done(4, EBADF)) << "the program's input can be read once too";
}

TEST_F(TmuxConversationTest, HasAnEmptyInputWhenThereIsNone) {
  begin();
  EXPECT_EQ(hear(readOpen(3, 0)), done(3, 0));
}

TEST_F(TmuxConversationTest, OpensNoFileForTheServer) {
  begin("secret");
  EXPECT_EQ(hear(message(Type::readOpen, numbers({3, -1}) + terminated("/etc/passwd"))), done(3, EACCES));
  EXPECT_EQ(hear(message(Type::writeOpen, numbers({4, -1, 0}) + terminated("/tmp/x"))), ready(4, EACCES));
  EXPECT_EQ(hear(readOpen(5, 77)), done(5, EACCES));
  EXPECT_EQ(hear(writeOpen(6, 77)), ready(6, EACCES));
}

TEST_F(TmuxConversationTest, GivesEachOutputOnce) {
  begin();
  hear(writeOpen(1, 1) + writeOpen(2, 2));
  EXPECT_EQ(hear(writeOpen(3, 1)), ready(3, EBADF));
  EXPECT_EQ(hear(message(Type::writeClose, numbers({2})) + writeOpen(4, 2)), ready(4, EBADF));
}

TEST_F(TmuxConversationTest, RefusesWritesToStreamsThatAreNotOpen) {
  begin();
  EXPECT_THROW(hear(write(1, "x")), TmuxUnexpected);
  begin();
  hear(writeOpen(1, 1));
  EXPECT_THROW(hear(message(Type::writeClose, numbers({1})) + write(1, "x")), TmuxUnexpected);
}

TEST_F(TmuxConversationTest, EndsPastTheLimitOfEitherOutput) {
  for (const std::int32_t descriptor : {1, 2}) {
    begin(std::nullopt, 10);
    hear(writeOpen(1, descriptor) + write(1, "12345") + write(1, "67890"));
    EXPECT_FALSE(conversation_->ended()) << "ten are allowed";
    hear(write(1, "1"));
    EXPECT_TRUE(conversation_->ended());
    EXPECT_EQ(conversation_->answer().end, End::outputTooLarge);
  }
}

TEST_F(TmuxConversationTest, DoesNotGrowWithStreamsThatAServerOpensWithoutEnd) {
  begin();
  EXPECT_THROW(
      {
        for (int stream = 0; stream < 10'000; ++stream) hear(writeOpen(stream, 77));
      },
      TmuxUnexpected);
}

TEST_F(TmuxConversationTest, PassesOverWhatDoesNotMatterToIt) {
  begin("text");
  EXPECT_EQ(hear(message(Type::flags, numbers({1, 2})) + message(Type::readCancel, numbers({3}))), "");
  EXPECT_FALSE(conversation_->ended());
}

}  // namespace
}  // namespace velmora
