#include <QtNetwork/QLocalSocket>
#include <memory>

#include "VelmoraApp/Shell/SingleInstance.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using testing::spinUntil;

class SingleInstanceTest : public ::testing::Test {
 protected:
  TemporaryDirectory directory;
};

TEST_F(SingleInstanceTest, ASecondOneWakesTheFirst) {
  SingleInstance first(directory.path());
  ASSERT_TRUE(first.isFirst());
  std::vector<std::string> tokens;
  QObject::connect(&first, &SingleInstance::woken, &first,
                   [&](const QByteArray& token) { tokens.push_back(token.toStdString()); });
  const SingleInstance second(directory.path());
  EXPECT_FALSE(second.isFirst());
  EXPECT_TRUE(second.wakeFirst({}));
  EXPECT_TRUE(second.wakeFirst("a token"));
  ASSERT_TRUE(spinUntil([&] { return tokens.size() == 2; }));
  EXPECT_THAT(tokens, ::testing::UnorderedElementsAre("", "a token"));
}

TEST_F(SingleInstanceTest, TheNextIsFirstWhenTheFirstHasEnded) {
  auto first = std::make_unique<SingleInstance>(directory.path());
  ASSERT_TRUE(first->isFirst());
  first.reset();
  const SingleInstance next(directory.path());
  EXPECT_TRUE(next.isFirst());
}

TEST_F(SingleInstanceTest, CanTakeItsSocketAwayWithoutItsEnd) {
  const SingleInstance first(directory.path());
  SingleInstance(directory.path()).leave();
  EXPECT_TRUE(std::filesystem::exists(directory / "window-v1.sock")) << "it is not the second one's";
  first.leave();
  EXPECT_FALSE(std::filesystem::exists(directory / "window-v1.sock"));
}

TEST_F(SingleInstanceTest, TakesOverWhatOneThatWasKilledLeft) {
  testing::writeFile(directory / "window-v1.sock", "what a crash left");
  testing::writeFile(directory / "window.lock", "999999999\nvelmora-app\n\n");
  SingleInstance next(directory.path());
  ASSERT_TRUE(next.isFirst());
  const auto wakes = testing::countOf(next, &SingleInstance::woken);
  EXPECT_TRUE(SingleInstance(directory.path()).wakeFirst({}));
  EXPECT_TRUE(spinUntil([&] { return *wakes == 1; }));
}

TEST_F(SingleInstanceTest, IsForTheUserAlone) {
  const SingleInstance first(directory.path());
  EXPECT_EQ(testing::modeOf(directory / "window-v1.sock") & 077u, 0u);
}

TEST_F(SingleInstanceTest, WithoutAPlaceForTheLockEveryStartIsAFirst) {
  const SingleInstance first(directory / "missing");
  EXPECT_TRUE(first.isFirst());
  EXPECT_FALSE(first.wakeFirst({}));
}

}  // namespace
}  // namespace velmora
