// What the frame loop owes the world, over the stand-in server's modules.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "platform/virtual/virtual.h"
#include "tests/support/stubserver.h"
#include "tests/support/wholeunit.h"

namespace {

class Shell : public testing::Test {
  protected:
    static void SetUpTestSuite() { unit_ = new WholeUnit("camera-recording"); }
    static void TearDownTestSuite() { delete unit_; }
    void SetUp() override {
        unit_->scene("camera-recording");
        unit_->settle();
        ASSERT_EQ(unit_->page(), "Home_LDD");
    }
    static std::string log() {
        std::ifstream file(Platform::Virtual::path("/dev/kmsg"));
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    static inline WholeUnit* unit_ = nullptr;
};

TEST_F(Shell, AServersWriteIsOnTheScreenInTheSameFrame) {
    for (const char* state : {"Standby", "Waiting", "Recording"}) {
        const auto before = unit_->shot().pixels;
        const auto pans = unit_->pans();
        unit_->set("VarCamState", state);
        unit_->pass();
        EXPECT_EQ(unit_->pans(), pans + 1) << state;
        EXPECT_NE(unit_->shot().pixels, before) << state;
        EXPECT_EQ(unit_->shot().pixels, unit_->redrawn().pixels) << state;
    }
}

}  // namespace
