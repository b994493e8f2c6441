#include <gtest/gtest.h>

#include "System/FileDescriptor.h"
#include "TerminalAutomation/AppleScript/ScriptFrames.h"

namespace velmora {
namespace {

std::string contentOf(const std::string& frame) { return std::string(scriptFrameIn(frame).value()); }

ScriptReply sentAndRead(const ScriptReply& reply) {
  return decodeScriptReply(contentOf(encodeScriptReply(reply, 7))).message;
}

/// An engine that answers with the number of calls so far.
class CountingEngine final : public ScriptEngine {
 public:
  bool compile(const std::string& source) override { return source == "right"; }
  ScriptReply call(const std::string& /*handler*/,
                   const std::vector<ScriptArgument>& /*arguments*/) override {
    return ScriptDescriptor{.integer = ++calls};
  }
  std::int32_t consent(const std::string& bundleIdentifier, bool asksUser) override {
    return bundleIdentifier == "app" && asksUser ? -1744 : 0;
  }

  int calls = 0;
};

TEST(ScriptFrames, AreTheLengthAndJson) {
  EXPECT_EQ(encodeScriptRequest(ScriptCompileRequest{"a"}, 1),
            std::string("\0\0\0\x39", 4) + R"({"number":1,"source":"a","arguments":[],"asksUser":false})");
  EXPECT_EQ(contentOf(encodeScriptRequest(ScriptCallRequest{"go", {std::string("1"), 1, true}}, 2)),
            R"({"number":2,"handler":"go","arguments":["1",1,true],"asksUser":false})");
  EXPECT_EQ(contentOf(encodeScriptRequest(ScriptConsentRequest{"app", true}, 2)),
            R"({"number":2,"consentFor":"app","arguments":[],"asksUser":true})");
  EXPECT_EQ(contentOf(encodeScriptReply(ScriptFailure{-1743}, 3)),
            R"({"number":3,"failure":{"number":-1743}})");
}

TEST(ScriptFrames, KeepTheKindsOfArguments) {
  const ScriptRequest call = ScriptCallRequest{"go", {std::string("7"), 7, false, std::string()}};
  const auto read = decodeScriptRequest(contentOf(encodeScriptRequest(call, 9)));
  EXPECT_EQ(read.message, call);
  EXPECT_EQ(read.number, 9);
}

TEST(ScriptFrames, KeepQuestionsForConsent) {
  for (const bool asksUser : {false, true}) {
    const ScriptRequest question = ScriptConsentRequest{"com.apple.Terminal", asksUser};
    EXPECT_EQ(decodeScriptRequest(contentOf(encodeScriptRequest(question, 1))).message, question);
  }
}

TEST(ScriptFrames, AQuestionForConsentIsAnsweredWithItsNumber) {
  Pipe requests = openPipe();
  Pipe replies = openPipe();
  ASSERT_TRUE(writeTo(requests.write, encodeScriptRequest(ScriptConsentRequest{"app", true}, 1)).empty());
  CountingEngine engine;
  ASSERT_TRUE(answerScriptRequest(engine, requests.read.get(), replies.write.get()));
  std::string bytes(4096, '\0');
  bytes.resize(static_cast<std::size_t>(::read(replies.read.get(), bytes.data(), bytes.size())));
  EXPECT_EQ(std::get<ScriptDescriptor>(decodeScriptReply(scriptFrameIn(bytes).value()).message).integer,
            -1744);
}

TEST(ScriptFrames, KeepListsInLists) {
  const ScriptDescriptor row{.text = "x", .integer = 3, .boolean = true, .items = {{.text = "y"}, {}}};
  const auto read = std::get<ScriptDescriptor>(sentAndRead(ScriptDescriptor{.items = {row, {}}}));
  ASSERT_EQ(read.items.size(), 2u);
  EXPECT_EQ(read.items[0].text, "x");
  EXPECT_EQ(read.items[0].integer, 3);
  EXPECT_TRUE(read.items[0].boolean);
  EXPECT_EQ(read.items[0].items.at(0).text, "y");
}

TEST(ScriptFrames, KeepAFailureWithoutANumber) {
  EXPECT_FALSE(std::get<ScriptFailure>(sentAndRead(ScriptFailure{})).number.has_value());
}

TEST(ScriptFrames, AreThereOnceAllTheirBytesAre) {
  const std::string frame = encodeScriptReply(ScriptDescriptor{.text = "text"}, 1);
  for (std::size_t size = 0; size < frame.size(); ++size) {
    EXPECT_FALSE(scriptFrameIn(frame.substr(0, size)).has_value()) << size;
  }
  EXPECT_EQ(scriptFrameIn(frame + "more")->size(), frame.size() - 4);
}

TEST(ScriptFrames, RefuseWhatIsNone) {
  EXPECT_THROW(scriptFrameIn("\x04\x01\x01\x01"), ScriptFrameError);  // 64 MiB and some
  for (const std::string text :
       {"", "no", "[]", "{}", R"({"source":"a","arguments":[]})", R"({"number":1,"arguments":[]})",
        R"({"number":1,"source":"a","handler":"b","arguments":[],"asksUser":false})",
        R"({"number":1,"handler":"b","consentFor":"c","arguments":[],"asksUser":false})",
        R"({"number":1,"handler":"a","arguments":[1.5]})",
        R"({"number":1,"handler":"a","arguments":[2147483648]})",
        R"({"number":1,"handler":"a","arguments":[null]})"}) {
    EXPECT_THROW(decodeScriptRequest(text), ScriptFrameError) << text;
  }
  for (const std::string text : {"", "{}", R"({"number":1,"value":{}})", R"({"number":1,"value":7})"}) {
    EXPECT_THROW(decodeScriptReply(text), ScriptFrameError) << text;
  }
}

TEST(ScriptFrames, AreAnsweredOneByOneUntilTheEnd) {
  Pipe requests = openPipe();
  Pipe replies = openPipe();
  const std::string both = encodeScriptRequest(ScriptCompileRequest{"right"}, 1) +
                           encodeScriptRequest(ScriptCallRequest{"go", {}}, 2);
  ASSERT_TRUE(writeTo(requests.write, both).empty());
  requests.write.close();
  CountingEngine engine;
  EXPECT_TRUE(answerScriptRequest(engine, requests.read.get(), replies.write.get()));
  EXPECT_EQ(engine.calls, 0) << "the second request is left for later";
  EXPECT_TRUE(answerScriptRequest(engine, requests.read.get(), replies.write.get()));
  EXPECT_FALSE(answerScriptRequest(engine, requests.read.get(), replies.write.get()));
  EXPECT_EQ(engine.calls, 1);

  std::string bytes(4096, '\0');
  bytes.resize(static_cast<std::size_t>(::read(replies.read.get(), bytes.data(), bytes.size())));
  const auto first = scriptFrameIn(bytes).value();
  EXPECT_TRUE(std::get<ScriptDescriptor>(decodeScriptReply(first).message).boolean);
  const auto second = scriptFrameIn(std::string_view(bytes).substr(4 + first.size())).value();
  EXPECT_EQ(std::get<ScriptDescriptor>(decodeScriptReply(second).message).integer, 1);
}

TEST(ScriptFrames, ThatAreNoRequestsEndTheConversation) {
  Pipe requests = openPipe();
  Pipe replies = openPipe();
  ASSERT_TRUE(writeTo(requests.write, std::string_view("\0\0\0\2no", 6)).empty());
  CountingEngine engine;
  EXPECT_FALSE(answerScriptRequest(engine, requests.read.get(), replies.write.get()));
}

}  // namespace
}  // namespace velmora
