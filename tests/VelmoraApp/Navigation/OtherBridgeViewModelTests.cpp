#include <QtCore/QRegularExpression>

#include "VelmoraApp/Navigation/OtherBridgeViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

class OtherBridgeViewModelTest : public testing::AppFixture {
 protected:
  /// A bridge of this very process, so that nobody ends it.
  BridgeHost other{{.environment = options.bridge.environment,
                    .makeTerminal = [](const auto&) { return std::make_unique<testing::FakeTerminal>(); }}};
};

TEST_F(OtherBridgeViewModelTest, SaysWhoServesAndSinceWhen) {
  const auto about = runningProcess(::getpid());
  options.bridge.now = [start = Date::fromUnixSeconds(*about->startedAt)] { return start; };
  app = std::make_unique<AppModel>(options);
  const OtherBridgeViewModel shown(*app);
  EXPECT_TRUE(shown.serves());
  const auto expected = QString("^Another bridge of yours is serving: %1, process %2, since \\d\\d:\\d\\d$")
                            .arg(text(about->name))
                            .arg(::getpid());
  EXPECT_TRUE(QRegularExpression(expected).match(shown.title()).hasMatch()) << shown.title().toStdString();
  EXPECT_EQ(shown.problem(), "");
  EXPECT_EQ(shown.takeOverText(), "End it and take over");
}

TEST_F(OtherBridgeViewModelTest, SaysThatItIsAtItAndWhyItCouldNot) {
  app = std::make_unique<AppModel>(options);
  OtherBridgeViewModel shown(*app);
  shown.takeOver();
  EXPECT_TRUE(shown.isUnderWay());
  EXPECT_EQ(shown.takeOverText(), "Ending it…");
  ASSERT_TRUE(testing::spinUntil([&] { return !shown.isUnderWay(); }));
  EXPECT_EQ(shown.problem(), "Meanwhile another process serves there.");
}

using OtherBridgeViewModelAloneTest = testing::AppFixture;

TEST_F(OtherBridgeViewModelAloneTest, HasNothingToSayWhileWeServe) {
  startApp();
  const OtherBridgeViewModel shown(*app);
  EXPECT_FALSE(shown.serves());
  EXPECT_EQ(shown.title(), "");
}

}  // namespace
}  // namespace velmora
