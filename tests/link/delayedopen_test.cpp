#include "apps/libs/delayedopen/delayedopen.h"

#include <errno.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "world.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Device final : public DelayedOpen {
  public:
    Device() : DelayedOpen("/dev/thing") {
        setStateCallback([this](int state) { states.push_back(state); });
    }
    bool present = false;
    int attempts = 0;
    std::vector<int> states;

  protected:
    bool tryOpen() override {
        ++attempts;
        return present;
    }
};

class DelayedOpenTest : public WorldTest {
  protected:
    Device device;
};

}  // namespace

TEST_F(DelayedOpenTest, ADeviceThatIsThereOpensWithoutALine) {
    device.present = true;
    EXPECT_TRUE(device.poll());
    EXPECT_TRUE(device.poll());
    EXPECT_EQ(device.attempts, 1);
    EXPECT_THAT(device.states, ElementsAre(DelayedOpen::Opened));
    EXPECT_THAT(logTexts(), IsEmpty());
}

TEST_F(DelayedOpenTest, ADeviceThatAppearsAfterThreeSeconds) {
    EXPECT_FALSE(device.poll());
    step(1'000'000'000);
    EXPECT_FALSE(device.poll());
    step(2'000'000'000);
    device.present = true;
    EXPECT_TRUE(device.poll());
    EXPECT_TRUE(device.poll());
    EXPECT_THAT(device.states, ElementsAre(DelayedOpen::Retrying, DelayedOpen::Opened));
    EXPECT_THAT(logTexts(), ElementsAre("Open of device /dev/thing failed, trying for up to 5.000s",
                                        "Open of device /dev/thing suceeded after 3.000s and 2 tries"));
}

TEST_F(DelayedOpenTest, ADeviceThatNeverAppearsFailsForGoodUntilStart) {
    device.setTimeout(1.5F);
    device.poll();
    step(1'500'000'000);
    EXPECT_FALSE(device.poll());
    EXPECT_FALSE(device.hasFailed()) << "1.5 s is not above 1.5 s";
    step(1);
    EXPECT_FALSE(device.poll());
    EXPECT_TRUE(device.hasFailed());
    device.present = true;
    EXPECT_FALSE(device.poll());
    EXPECT_EQ(device.attempts, 3);
    EXPECT_EQ(logTexts().back(), "Open of device /dev/thing permanently failed after 1.500s and 3 tries");
    device.start();
    EXPECT_TRUE(device.poll());
    EXPECT_THAT(device.states,
                ElementsAre(DelayedOpen::Retrying, DelayedOpen::Failed, DelayedOpen::Idle, DelayedOpen::Opened));
}

TEST_F(DelayedOpenTest, ATimeoutOfZeroFailsOnTheSecondAttempt) {
    device.setTimeout(0);
    device.poll();
    EXPECT_EQ(device.state(), DelayedOpen::Retrying);
    step(1);
    device.poll();
    EXPECT_EQ(device.state(), DelayedOpen::Failed);
}

TEST_F(DelayedOpenTest, StartCountsFromNow) {
    device.start();
    EXPECT_THAT(device.states, IsEmpty()) << "it was idle already";
    step(6'000'000'000);
    device.poll();
    EXPECT_TRUE(device.hasFailed());
}

TEST_F(DelayedOpenTest, ACallbackMayStartAnew) {
    device.setTimeout(1);
    device.setStateCallback([this](int state) {
        if (state == DelayedOpen::Failed) device.start();
    });
    device.poll();
    step(2'000'000'000);
    device.poll();
    EXPECT_EQ(device.state(), DelayedOpen::Idle);
    EXPECT_EQ(logTexts().back(), "Open of device /dev/thing permanently failed after 2.000s and 2 tries");
}

TEST_F(DelayedOpenTest, WaitingTriesTenTimesASecond) {
    device.setTimeout(1);
    EXPECT_FALSE(device.waitUntilDone());
    EXPECT_EQ(device.attempts, 12) << "one at 0 s, ten up to 1.0 s, one above";
    device.start();
    device.present = true;
    EXPECT_TRUE(device.waitUntilDone());
}

TEST_F(DelayedOpenTest, SignalsDoNotLengthenTheWait) {
    driver.releaseClock();
    EventPoll poll;
    poll.setTimer(20);
    device.setTimeout(0.05F);
    EXPECT_FALSE(device.waitUntilDone()) << "each sleep that began anew would never end";
    poll.setTimer(-1);
    takeAlarm(poll);
    EXPECT_EQ(device.attempts, 2);
}
