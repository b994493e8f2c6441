#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/CallGate.h"

namespace velmora {
namespace {

TEST(CallGate, LetsOneCallInAtATime) {
  CallGate gate;
  EXPECT_FALSE(gate.isUnderWay());
  EXPECT_TRUE(gate.enter());
  EXPECT_TRUE(gate.isUnderWay());
  EXPECT_FALSE(gate.enter());
  EXPECT_TRUE(gate.leave()) << "somebody asked meanwhile";
  EXPECT_FALSE(gate.isUnderWay());
}

TEST(CallGate, AsksForOneMoreHoweverManyCame) {
  CallGate gate;
  gate.enter();
  for (int count = 0; count < 5; ++count) gate.enter();
  EXPECT_TRUE(gate.leave());
  EXPECT_TRUE(gate.enter());
  EXPECT_FALSE(gate.leave());
}

}  // namespace
}  // namespace velmora
