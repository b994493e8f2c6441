#include <gtest/gtest.h>

#include <stdexcept>

#include "VelmoraHelper/Commands/Deadline.h"

namespace velmora {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds ample{20000};

TEST(Deadline, ReturnsTheResultOfWorkThatEndsInTime) {
  EXPECT_EQ(within(ample, [] { return std::string("done"); }), "done");
  bool ran = false;
  within(ample, [&] { ran = true; });
  EXPECT_TRUE(ran);
}

TEST(Deadline, PassesOnWhatTheWorkThrows) {
  EXPECT_THROW(within(ample, [] { throw std::out_of_range("beyond"); }), std::out_of_range);
}

TEST(Deadline, LeavesWorkBehindThatDoesNotEndInTime) {
  auto gate = std::make_shared<std::promise<void>>();
  auto left = std::make_shared<std::promise<void>>();
  EXPECT_THROW(within(milliseconds(1),
                      [opened = gate->get_future().share(), left] {
                        opened.wait();
                        left->set_value();
                      }),
               DeadlinePassed);
  gate->set_value();
  left->get_future().wait();
}

TEST(Deadline, SaysHowLongItWaited) {
  EXPECT_STREQ(DeadlinePassed(std::chrono::seconds(10)).what(), "no answer within 10 seconds");
}

}  // namespace
}  // namespace velmora
