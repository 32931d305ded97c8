// The product, or anybody else, may leave any bytes in the memory areas: the modules reckon with them all the same.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/unit/world.h"

TEST(SpoiltMemory, IsLivedThroughAndTheUnitGoesOn) {
    World world;
    world.act("lens", "lens", "zoom-25-250");
    world.act("camera", "camera", "orvo");
    // As numbers: huge, hugely negative, -1; as floats: huge, almost nothing, not a number.
    for (const int value : {0x7f, 0x80, 0xff, 0x01}) {
        world.spoil(static_cast<std::byte>(value));
        world.run(1.5);
        world.act("hands", "knob", 0.25);
        world.run(0.5);
    }
    world.restart();
    world.turnKnobTo(0.25);
    EXPECT_FLOAT_EQ(world.fraction("VarFocusTargetValue"), 0.25F);
}

TEST(SpoiltMemory, OfTheClockBecomesATimeThatThereIs) {
    World world;
    for (const int value : {0x7f, 0x80, 0xff}) {
        world.spoil(static_cast<std::byte>(value));
        EXPECT_EQ(world.number("VarDateHour"), std::clamp(world.number("VarDateHour"), 0.0, 23.0));
        EXPECT_EQ(world.number("VarDateMinute"), std::clamp(world.number("VarDateMinute"), 0.0, 59.0));
        EXPECT_EQ(world.number("VarDateMonth"), std::clamp(world.number("VarDateMonth"), 1.0, 12.0));
    }
}
