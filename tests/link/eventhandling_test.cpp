#include "apps/common/event/eventhandling.h"

#include <errno.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "records.h"
#include "world.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* path = "/dev/input/touchscreen0";

class EventHandlingTest : public WorldTest {
  protected:
    EventHandlingTest() {
        driver.plug(path);
        reader.setTouchCallback([this](int x, int y, EventHandling::TouchEvent phase, int slot) {
            static constexpr const char* names[] = {"touch", "release", "move"};
            seen.push_back(std::string(names[phase]) + " " + std::to_string(slot) + " @ " + std::to_string(x) + "," +
                           std::to_string(y));
        });
        reader.setKeyCallback([this](const EventHandling::input_event& event) {
            seen.push_back("key " + std::to_string(event.code) + " " + std::to_string(event.value));
        });
    }

    void feed(const Records& records) {
        ASSERT_TRUE(driver.feed(path, records.data(), records.size() * sizeof records[0]));
    }

    /// Takes the device away from under the open reader.
    void vanish() {
        driver.unplug(path);
        Platform::Virtual::failCall(Call::Read, ENODEV, {.path = path});
    }

    /// What the callbacks hear of the records when all of them are read in one go.
    std::vector<std::string> heard(const Records& records) {
        seen.clear();
        feed(records);
        reader.poll();
        return seen;
    }

    EventHandling reader{path};
    std::vector<std::string> seen;
};

const Records touchDown = {trackingId(5), positionX(100), positionY(60), report()};

}  // namespace

TEST_F(EventHandlingTest, AContactIsTouchMoveRelease) {
    EXPECT_THAT(heard(touchDown), ElementsAre("touch 0 @ 30,50"));
    EXPECT_THAT(heard({positionX(120), report()}), ElementsAre("move 0 @ 30,60"));
    EXPECT_THAT(heard({trackingId(-1), report()}), ElementsAre("release 0 @ 30,60"));
    EXPECT_THAT(heard({report()}), IsEmpty());
}

TEST_F(EventHandlingTest, TwoFingersHaveTheirOwnPlaces) {
    EXPECT_THAT(heard({slot(0), trackingId(5), positionX(100), positionY(60), slot(1), trackingId(6), positionX(200),
                       positionY(80), report()}),
                ElementsAre("touch 0 @ 30,50", "touch 1 @ 40,100"));
    EXPECT_THAT(heard({slot(0), positionX(102), slot(1), trackingId(-1), report()}),
                ElementsAre("move 0 @ 30,51", "release 1 @ 40,100"));
}

TEST_F(EventHandlingTest, SlotsOutsideTheTwoAreIgnored) {
    for (const int outside : {2, 9, -1, 0x7fffffff}) {
        EXPECT_THAT(
            heard({slot(outside), trackingId(7), positionX(10), positionY(10), report(), trackingId(-1), report()}),
            IsEmpty());
    }
    EXPECT_THAT(heard({slot(0), trackingId(8), positionX(2), positionY(2), report()}), ElementsAre("touch 0 @ 1,1"));
}

TEST_F(EventHandlingTest, ACoordinateOfZeroKeepsThePlace) {
    heard(touchDown);
    EXPECT_THAT(heard({positionX(0), positionY(0), report()}), IsEmpty());
    EXPECT_THAT(heard({positionX(0), positionY(80), report()}), ElementsAre("move 0 @ 40,50"));
}

TEST_F(EventHandlingTest, AReleaseOfAnUnseenContactIsFirstATouch) {
    EXPECT_THAT(heard({trackingId(4), report(), trackingId(-1), report()}),
                ElementsAre("touch 0 @ 0,0", "release 0 @ 0,0"));
    EXPECT_THAT(heard({trackingId(-1), report()}), ElementsAre("touch 0 @ 0,0", "release 0 @ 0,0"));
}

TEST_F(EventHandlingTest, EachSyncEmitsOnce) {
    EXPECT_THAT(heard({trackingId(5), positionX(100), report(), report(), report()}), ElementsAre("touch 0 @ 0,50"));
}

TEST_F(EventHandlingTest, WhatIsNotToldByTheEndOfAPassOrASlotIsForgotten) {
    EXPECT_THAT(heard({trackingId(5), slot(1), positionX(8), report()}), ElementsAre("move 1 @ 0,4"));
    heard({slot(0), trackingId(6)});
    EXPECT_THAT(heard({positionX(10), positionY(20)}), IsEmpty());
    EXPECT_THAT(heard({report()}), IsEmpty());
    EXPECT_THAT(heard({positionX(12), report()}), ElementsAre("move 0 @ 10,6"));
}

TEST_F(EventHandlingTest, KeysPassAsTheyCome) {
    EXPECT_THAT(heard({key(256, 1), report(), key(256, 2), key(256, 0), key(0x2ff, 0), key(0xffff, 1)}),
                ElementsAre("key 256 1", "key 256 2", "key 256 0", "key 767 0", "key 65535 1"));
}

TEST_F(EventHandlingTest, OtherTypesAreIgnored) {
    EXPECT_THAT(heard({{0, 0, 4, 4, 7}, {0, 0, 0xffff, 57, -1}, report()}), IsEmpty());
}

TEST_F(EventHandlingTest, WithoutCallbacksNothingHappens) {
    reader.setTouchCallback({});
    reader.setKeyCallback({});
    EXPECT_THAT(heard({trackingId(5), positionX(100), key(256, 1), report(), trackingId(-1), report()}), IsEmpty());
    heard({trackingId(6), positionX(110), report()});
    reader.setTouchCallback([this](int, int, EventHandling::TouchEvent phase, int) {
        seen.push_back(phase == EventHandling::RELEASE ? "release" : "other");
    });
    EXPECT_THAT(heard({trackingId(-1), report()}), ElementsAre("release")) << "the contact was followed all the same";
}

TEST_F(EventHandlingTest, TheLogTellsContactsByName) {
    heard(touchDown);
    heard({slot(0), absolute(58, 7)});
    EXPECT_THAT(logTexts(), ElementsAre("      ID(  5)", "       X(100)", "       Y( 60)", "0    TOUCH @  30x 50",
                                        "    SLOT(  0)", "      58(  7)"));
}

TEST_F(EventHandlingTest, AnOverrunReleasesContactsAndKeys) {
    heard(touchDown);
    heard({key(256, 1), key(261, 1), key(261, 0)});
    EXPECT_THAT(heard({dropped(), positionX(7), key(257, 1), report()}), ElementsAre("release 0 @ 30,50", "key 256 0"));
    EXPECT_THAT(logTexts(), testing::Contains(HasSubstr("lost events")));
}

TEST_F(EventHandlingTest, WhatTheOverrunEndedIsNotHeardOfAgainUntilItBeginsAnew) {
    heard(touchDown);
    heard({key(256, 1)});
    heard({dropped(), report()});
    EXPECT_THAT(heard({positionX(140), key(256, 2), report()}), IsEmpty());
    EXPECT_THAT(heard({trackingId(-1), key(256, 0), report()}), IsEmpty());
    EXPECT_THAT(heard({trackingId(6), positionX(144), key(256, 1), report()}),
                ElementsAre("key 256 1", "touch 0 @ 30,72"));
}

TEST_F(EventHandlingTest, AnOverrunLastsUntilTheNextReport) {
    heard(touchDown);
    EXPECT_THAT(heard({dropped(), trackingId(6)}), ElementsAre("release 0 @ 30,50"));
    const EventHandling::input_event otherSync = {0, 0, 0, 1, 0};
    EXPECT_THAT(heard({otherSync, key(256, 1), positionX(90), report(), trackingId(7), positionX(80), report()}),
                ElementsAre("touch 0 @ 30,40"));
}

TEST_F(EventHandlingTest, AVanishedDeviceIsReleasedAndOpenedAnew) {
    heard(touchDown);
    heard({key(256, 1)});
    seen.clear();
    vanish();
    reader.poll();
    EXPECT_THAT(seen, ElementsAre("release 0 @ 30,50", "key 256 0"));
    EXPECT_EQ(reader.state(), DelayedOpen::Idle);
    reader.poll();
    EXPECT_EQ(reader.state(), DelayedOpen::Retrying);
    step(3'000'000'000);
    driver.plug(path);
    EXPECT_THAT(heard({trackingId(6), positionX(10), positionY(20), report()}), ElementsAre("touch 0 @ 10,5"));
}

TEST_F(EventHandlingTest, TheNextDeviceOwesNothingToTheOneThatVanished) {
    heard({slot(1), trackingId(5), positionX(100), positionY(60), key(256, 1), report()});
    heard({slot(0), trackingId(6), positionX(40), positionY(80), report(), slot(1), dropped()});
    vanish();
    reader.poll();
    driver.plug(path);
    EXPECT_THAT(heard({positionX(120), key(256, 0), report()}), ElementsAre("key 256 0", "move 0 @ 40,60"));
}

TEST_F(EventHandlingTest, AVanishedDeviceThatStaysAwayIsGivenUp) {
    reader.poll();
    vanish();
    reader.poll();
    const std::size_t lines = logTexts().size();
    for (int frame = 0; frame < 600; ++frame) {
        step(16'666'667);
        reader.poll();
    }
    EXPECT_TRUE(reader.hasFailed());
    EXPECT_EQ(logTexts().size(), lines + 2) << "one line at the first failure, one at the last";
}

TEST_F(EventHandlingTest, ADeviceThatIsMissingAtFirstIsFoundLater) {
    driver.unplug(path);
    EXPECT_FALSE(reader.poll());
    step(3'000'000'000);
    driver.plug(path);
    EXPECT_TRUE(reader.poll());
    EXPECT_EQ(logTexts().back(), std::string("Open of device ") + path + " suceeded after 3.000s and 1 tries");
}

TEST_F(EventHandlingTest, AReaderThatIsStartedAnewKeepsOneDescriptor) {
    reader.poll();
    reader.start();
    const unsigned closed = Platform::Virtual::callCount(Call::Close);
    EXPECT_THAT(heard(touchDown), ElementsAre("touch 0 @ 30,50"));
    EXPECT_EQ(Platform::Virtual::callCount(Call::Close), closed + 1);
}

TEST_F(EventHandlingTest, AShortRecordIsDroppedWithAWarning) {
    driver.feed(path, "short", 5);
    EXPECT_TRUE(reader.poll());
    EXPECT_THAT(logTexts(), ElementsAre(std::string("Dropped a short record of 5 bytes from ") + path));
    EXPECT_THAT(heard({key(256, 1)}), ElementsAre("key 256 1"));
}

TEST_F(EventHandlingTest, AReadThatKeepsFailingIsToldOnce) {
    reader.poll();
    for (int frame = 0; frame < 3; ++frame) {
        Platform::Virtual::failCall(Call::Read, EIO);
        EXPECT_TRUE(reader.poll());
    }
    const std::string told = std::string("Read from ") + path + ": Input/output error";
    EXPECT_THAT(logTexts(), ElementsAre(told));
    EXPECT_THAT(heard({key(256, 1)}), ElementsAre("key 256 1"));
    Platform::Virtual::failCall(Call::Read, EIO);
    reader.poll();
    EXPECT_THAT(logTexts(), ElementsAre(told, told)) << "it had worked in between";
}

TEST_F(EventHandlingTest, WaitingOpensButReadsNothing) {
    feed({key(256, 1)});
    EXPECT_TRUE(reader.waitUntilDone());
    EXPECT_THAT(seen, IsEmpty());
}
