// An idle pass of the frame loop's input side must not allocate.
#include <gtest/gtest.h>

#include <new>

#include "apps/common/event/eventhandling.h"
#include "apps/common/event/serverconnection.h"
#include "apps/common/log/log.h"
#include "records.h"
#include "server.h"
#include "tests/support/allocations.h"
#include "world.h"

namespace {

struct Counter final : ServerConnection::EventHandler {
    int notices = 0;
    void onNotify(const Notify&) override { ++notices; }
};

class AllocationTest : public WorldTest {
  protected:
    static constexpr const char* path = "/dev/input/touchscreen0";

    AllocationTest() {
        driver.plug(path);
        connection.setHandler(&counter);
        server.accept();
        device.setTouchCallback([this](int, int, EventHandling::TouchEvent, int) { ++touches; });
        pass();
    }
    ~AllocationTest() override { server.die(); }

    /// What the frame loop does with its inputs in one pass.
    void pass() {
        while (poll.wait(0) == EventPoll::Handled) {
        }
        device.poll();
        missing.poll();
    }

    Server server;
    EventPoll poll;
    ServerConnection connection{&poll};
    Counter counter;
    EventHandling device{path};
    EventHandling missing{"/dev/input/missing"};
    int touches = 0;
};

}  // namespace

TEST_F(AllocationTest, TheCounterCounts) {
    const std::size_t before = allocations;
    // By name: a new-expression whose memory nobody uses may be left out by the compiler.
    ::operator delete(::operator new(1));
    EXPECT_EQ(allocations, before + 1);
}

TEST_F(AllocationTest, AnIdlePassAllocatesNothing) {
    const std::size_t before = allocations;
    for (int i = 0; i < 100; ++i) pass();
    EXPECT_EQ(allocations, before);
}

TEST_F(AllocationTest, NeitherDoesABusyOneNorItsLogLines) {
    const Records records = {trackingId(5), positionX(100), positionY(60), report(), trackingId(-1), report()};
    const std::vector<Notify> notices(300);
    ASSERT_TRUE(driver.feed(path, records.data(), records.size() * sizeof records[0]));
    server.send(notices);
    Log::log(nullptr, Log::Warn, "f", 1, "the first line opens the log");
    const std::size_t before = allocations;
    pass();
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(counter.notices, 300);
    EXPECT_EQ(touches, 2);
}
