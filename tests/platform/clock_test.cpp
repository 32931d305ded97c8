#include <gtest/gtest.h>

#include "platform/system.h"
#include "platform/virtual/virtual.h"

namespace {

struct Clock : testing::Test {
    Platform::Virtual::TemporaryInstance instance;
    Platform::Virtual::Driver driver;
};

}  // namespace

TEST_F(Clock, StandsWhileHeldAndGoesOnFromThere) {
    const auto before = Platform::steadyNanoseconds();
    driver.holdClock();
    const auto held = Platform::steadyNanoseconds();
    EXPECT_GE(held, before);
    EXPECT_EQ(Platform::steadyNanoseconds(), held);
    driver.advanceClock(1'000'000'000'000);
    EXPECT_EQ(Platform::steadyNanoseconds(), held + 1'000'000'000'000);
    driver.releaseClock();
    const auto after = Platform::steadyNanoseconds();
    EXPECT_GE(after, held + 1'000'000'000'000) << "never backwards";
    EXPECT_LT(after, held + 1'060'000'000'000) << "and no leap";
}

TEST_F(Clock, SleepOnAHeldClockStepsIt) {
    driver.holdClockAt(5);
    std::int64_t rest = 77;
    EXPECT_EQ(Platform::sleepNanoseconds(2'000'000'000, &rest), 0);
    EXPECT_EQ(rest, 0);
    EXPECT_EQ(Platform::steadyNanoseconds(), 2'000'000'005);
    EXPECT_EQ(Platform::sleepNanoseconds(3, nullptr), 0);
    EXPECT_EQ(driver.time(), 2'000'000'008);
}
