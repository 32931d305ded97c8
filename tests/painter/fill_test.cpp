#include "tests/painter/target.h"

using Engine::Rect;

namespace {

constexpr Engine::Color red = 0xffff0000;

}  // namespace

TEST(Fill, KeepsToTheClipAtEveryRotation) {
    const Picture expected[4] = {
        {".....", ".##..", ".#...", "....."},
        {".....", ".#...", ".##..", "....."},
        {".....", "...#.", "..##.", "....."},
        {".....", "..##.", "...#.", "....."},
    };
    for (unsigned rotation = 0; rotation < 4; ++rotation) {
        Target<unsigned int> target(5, 4, rotation);
        target.letters[red] = '#';
        target.painter.setBackground(red);
        target.painter.setClip({1, 1, 2, 100});
        target.painter.fill({-3, -3, 6, 5});
        target.painter.setClip({1, 2, 1, 1});
        target.painter.fill({0, 0, 100, 100});
        EXPECT_EQ(target.picture(), expected[rotation]) << "rotation " << rotation;
    }
}
