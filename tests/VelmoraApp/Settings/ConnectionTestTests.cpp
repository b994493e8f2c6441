#include <csignal>
#include <filesystem>
#include <memory>

#include "VelmoraApp/Settings/ConnectionTest.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using testing::spinUntil;

class ConnectionTestTest : public ::testing::Test {
 protected:
  /// A helper that does as the script says.
  QString helper(const std::string& script) {
    const auto path = directory / "velmora";
    testing::writeFile(path, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return text(path.string());
  }
  static bool ended(const ConnectionTest& test) {
    return spinUntil([&] { return !test.isUnderWay() && !test.result().isEmpty(); });
  }

  TemporaryDirectory directory;
};

TEST_F(ConnectionTestTest, ShowsWhatTheHelperWasAnswered) {
  ConnectionTest test(helper("echo \"asked: $*\""));
  EXPECT_EQ(test.result(), "");
  test.run();
  EXPECT_TRUE(test.isUnderWay());
  test.run();  // while it is under way nothing more happens
  ASSERT_TRUE(ended(test));
  EXPECT_EQ(test.result(), "The helper reached Velmora. This is the answer that it got:");
  EXPECT_EQ(test.meaning(), Meaning::Positive);
  EXPECT_EQ(test.answer(), "asked: status");
}

TEST_F(ConnectionTestTest, ShowsWhyThereWasNoAnswer) {
  ConnectionTest test(helper("echo not running >&2; exit 1"));
  test.run();
  ASSERT_TRUE(ended(test));
  EXPECT_EQ(test.result(), "The helper got no answer from Velmora.");
  EXPECT_EQ(test.meaning(), Meaning::Danger);
  EXPECT_EQ(test.answer(), "not running");
}

TEST_F(ConnectionTestTest, SaysThatThereIsNoHelper) {
  ConnectionTest test("/there/is/none");
  test.run();
  ASSERT_TRUE(ended(test));
  EXPECT_EQ(test.result(), "The helper at /there/is/none could not be started. Install Velmora again.");
  EXPECT_EQ(test.meaning(), Meaning::Danger);
}

TEST_F(ConnectionTestTest, AHelperThatHangsIsEnded) {
  ConnectionTest test(helper("exec sleep 600"), std::chrono::milliseconds(50));
  test.run();
  ASSERT_TRUE(ended(test));
  EXPECT_EQ(test.result(), "The helper got no answer from Velmora.");
}

TEST_F(ConnectionTestTest, EndsWithAHelperStillRunning) {
  const auto file = directory / "pid";
  auto test = std::make_unique<ConnectionTest>(helper("echo $$ >'" + file.string() + "'; exec sleep 600"));
  test->run();
  ASSERT_TRUE(
      spinUntil([&] { return std::filesystem::exists(file) && std::filesystem::file_size(file) > 0; }));
  const auto process = std::stoi(testing::contentOf(file));
  EXPECT_EQ(::kill(process, 0), 0);
  test.reset();
  EXPECT_EQ(::kill(process, 0), -1);
}

}  // namespace
}  // namespace velmora
