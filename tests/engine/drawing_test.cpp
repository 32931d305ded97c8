// Frames: what is drawn when, overlays, clipping, outlines and slides.
#include "embedded-gui-engine/pagenavigator.h"
#include "embedded-gui-engine/valueprovider.h"
#include "world.h"

using testing::Each;
using testing::ElementsAre;

namespace Engine::Test {
namespace {

using Direction = PageNavigator::Direction;
using Mode = PageNavigator::Mode;

constexpr Color Red = 0xFFFF0000, Green = 0xFF00FF00, Blue = 0xFF0000FF, White = 0xFFFFFFFF;

char letter(unsigned pixel) {
    switch (pixel) {
        case Red: return 'r';
        case Green: return 'g';
        case Blue: return 'b';
        case White: return 'w';
        default: return '.';
    }
}

class Drawing : public World {
  protected:
    Drawing() { manager.setPainter(&screen.painter); }
    std::vector<std::string> picture() { return screen.picture(&letter); }
    Screen screen{6, 4};
};

TEST_F(Drawing, AFrameEndsIdleWithHiddenOverlaysToo) {
    Page page({.backgroundColor = Red}), hidden({.backgroundColor = Green, .enabled = false});
    const auto overlays = list<Page>({&hidden});
    manager.setOverlays(overlays);
    manager.setActivePage(&page);
    EXPECT_TRUE(cycle());
    manager.drawFrame();
    EXPECT_THAT(picture(), Each("rrrrrr"));
    EXPECT_FALSE(cycle()) << "the dirty area of a hidden overlay is gone as well";
    hidden.setVisible(true);
    EXPECT_TRUE(cycle());
    manager.drawFrame();
    EXPECT_THAT(picture(), Each("gggggg"));
    hidden.setVisible(false);
    EXPECT_TRUE(cycle());
    manager.drawFrame();
    EXPECT_THAT(picture(), Each("rrrrrr"));
    EXPECT_FALSE(cycle());
}

TEST_F(Drawing, OverlaysWithoutBackgroundLetThePageShow) {
    Box note({.x = 1, .y = 1, .width = 2, .height = 1, .background = Green});
    Page page({.backgroundColor = Red}), overlay({.noBackground = true, .children = list<Object>({&note})});
    overlay.linkChildren();
    const auto overlays = list<Page>({&overlay});
    manager.setOverlays(overlays);
    manager.setActivePage(&page);
    manager.drawFrame();
    EXPECT_THAT(picture(), ElementsAre("rrrrrr", "rggrrr", "rrrrrr", "rrrrrr"));
}

TEST_F(Drawing, TheClipFlagBoundsAFrameByAllDirtyAreas) {
    Box left({.width = 2, .height = 1, .background = Red}),
        note({.x = 3, .y = 1, .width = 1, .height = 1, .background = Blue});
    Page page({.backgroundColor = Red, .children = list<Object>({&left})});
    Page overlay({.noBackground = true, .children = list<Object>({&note})});
    page.linkChildren();
    overlay.linkChildren();
    const auto overlays = list<Page>({&overlay});
    manager.setOverlays(overlays);
    manager.setActivePage(&page);
    manager.drawFrame(GuiManager::Clip::DirtyArea);
    EXPECT_THAT(picture(), ElementsAre("rrrrrr", "rrrbrr", "rrrrrr", "rrrrrr"));
    page.draw(screen.painter);
    page.setFlag(Object::FlagEnabled, false);
    screen.painter.setBackground(White);
    screen.painter.resetClipStack();
    screen.painter.clear();
    page.setFlag(Object::FlagEnabled, true);
    left.setBackground(Green);
    note.setBackground(Green);
    manager.drawFrame(GuiManager::Clip::DirtyArea);
    EXPECT_THAT(picture(), ElementsAre("ggrrww", "rrrgww", "wwwwww", "wwwwww"));
}

TEST_F(Drawing, OutlinesLieOnePixelOutside) {
    Box box({.x = 2, .y = 1, .width = 2, .height = 1, .foreground = White, .background = Red});
    Page page({.backgroundColor = Blue, .children = list<Object>({&box})});
    page.linkChildren();
    manager.setDrawDebugFrames(true);
    manager.setActivePage(&page);
    manager.drawFrame();
    EXPECT_THAT(picture(), ElementsAre("bwwwwb", "bwrrwb", "bwwwwb", "bbbbbb"));
}

TEST_F(Drawing, ARotationThatIsRefusedIsLoggedAndTheFrameDrawn) {
    struct Angle : ValueProvider<int> {
        const char* name() const override { return "angle"; }
        int value() const override { return degrees; }
        int degrees = 45;
    } angle;
    Page page({.backgroundColor = Red});
    manager.setRotationProvider(&angle);
    manager.setActivePage(&page);
    manager.drawFrame();
    EXPECT_TRUE(logged("0 Could not set rotation of 45 degree."));
    EXPECT_THAT(picture(), Each("rrrrrr"));
    angle.degrees = 180;
    manager.drawFrame();
    EXPECT_EQ(screen.painter.rotationIndex(), 2u);
}

/// Two pages side by side on a screen of 60 x 40 at each of the four rotations.
class Slides : public World, public testing::WithParamInterface<int> {
  protected:
    Slides() {
        screen.painter.setRotationDegrees(GetParam());
        width = screen.painter.logicalWidth();
        height = screen.painter.logicalHeight();
        manager.setPainter(&screen.painter);
        navigator.setRectangle({0, 0, static_cast<std::int16_t>(width), static_cast<std::int16_t>(height)});
        sheet.linkChildren();
        const auto overlays = list<Page>({&sheet});
        manager.setOverlays(overlays);
        manager.setActivePage(&here);
        frame();
    }
    void frame() {
        cycle();
        manager.drawFrame();
        manager.finishFrame();
    }
    /// The columns or rows in letters, each of which must have one colour.
    std::string bands(bool columns) {
        const auto picture = screen.picture(&letter);
        std::string result;
        for (int i = 0; i < (columns ? width : height); ++i) {
            const char first =
                columns ? picture[0][static_cast<std::size_t>(i)] : picture[static_cast<std::size_t>(i)][0];
            for (int k = 0; k < (columns ? height : width); ++k)
                EXPECT_EQ(picture[static_cast<std::size_t>(columns ? k : i)][static_cast<std::size_t>(columns ? i : k)],
                          first);
            result += first;
        }
        return result;
    }
    static std::string band(int a, char first, int b, char second) {
        return std::string(static_cast<std::size_t>(a), first) + std::string(static_cast<std::size_t>(b), second);
    }
    void dragTo(int dx, int dy) {
        down(5, 5);
        move(5 + dx, 5 + dy);
        move(5 + dx, 5 + dy);
        frame();
    }

    Screen screen{60, 40};
    int width, height;
    Page here{PageParams{.name = "here", .backgroundColor = Red}};
    Page west{PageParams{.name = "west", .backgroundColor = Green}};
    Page north{PageParams{.name = "north", .backgroundColor = Blue}};
    const PageNavigator::Link toWest{&here, &west, Mode::Moves, Mode::Moves, Direction::WestOf};
    const PageNavigator::Link toNorth{&north, &here, Mode::Moves, Mode::Fixed, Direction::SouthOf};
    const PageNavigator::Link toNothing{&here, nullptr, Mode::Moves, Mode::Moves, Direction::SouthOf};
    PageNavigator navigator{{}, list<const PageNavigator::Link>({nullptr, &toWest, &toNorth, &toNothing}), 100};
    Page sheet{PageParams{.noBackground = true, .children = list<Object>({&navigator})}};
};

TEST_P(Slides, DraggingRightBringsTheWesternPageInFromTheLeft) {
    dragTo(26, 0);
    EXPECT_EQ(bands(true), band(26, 'g', width - 26, 'r'));
    move(5 + 2 * width, 5);
    frame();
    EXPECT_EQ(bands(true), band(width, 'g', 0, 'r')) << "clamped";
    move(5 + 10, 5);
    move(5 + 12, 5);
    up(5 + 12, 5);
    for (const int offset : {12, 12, 12 + width / 2}) {  // each frame shows where the one before had moved to
        frame();
        EXPECT_EQ(bands(true), band(offset, 'g', width - offset, 'r'));
        passMillis(50);
    }
    for (int i = 0; i < 3; ++i) {
        passMillis(100);
        frame();
    }
    EXPECT_EQ(manager.activePage(), &west) << "the last step led away, so it settled there";
    EXPECT_EQ(manager.secondPage(), nullptr);
    EXPECT_EQ(bands(true), band(width, 'g', 0, ' '));
    EXPECT_EQ(static_cast<int>(screen.painter.rotationIndex()) * 90, GetParam());
    EXPECT_FALSE(cycle());
}

TEST_P(Slides, AFixedPageIsCoveredByTheMovingOne) {
    dragTo(0, 26);
    EXPECT_EQ(bands(false), band(26, 'b', height - 26, 'r')) << "the active page stays, the other lies on top";
    move(5, 5 + 15);
    up(5, 5 + 15);
    for (int i = 0; i < 3; ++i) {
        passMillis(100);
        frame();
    }
    EXPECT_EQ(manager.activePage(), &here) << "the last step led back";
    EXPECT_EQ(manager.compositor(), nullptr);
    frame();
    EXPECT_EQ(bands(false), band(height, 'r', 0, ' '));
}

INSTANTIATE_TEST_SUITE_P(Rotations, Slides, testing::Values(0, 90, 180, 270));

class Navigator : public Slides {};

TEST_P(Navigator, OpensBeyondTwentyFivePixelsWithAStraightPath) {
    down(30, 20);
    move(55, 20);
    EXPECT_EQ(navigator.direction(), Direction::Unrelated);
    EXPECT_EQ(manager.touchGrabber(), nullptr);
    move(56, 20);
    EXPECT_EQ(navigator.direction(), Direction::WestOf);
    EXPECT_EQ(manager.touchGrabber(), &navigator);
    EXPECT_EQ(manager.secondPage(), &west);
    up(56, 20);
    EXPECT_EQ(navigator.direction(), Direction::Unrelated) << "a link without an offset closes on release";
    EXPECT_EQ(manager.secondPage(), nullptr);
    down(30, 20);
    move(30, 33);
    move(30, 20);
    move(58, 20);
    EXPECT_EQ(navigator.direction(), Direction::Unrelated) << "the path across was 26";
    up(58, 20);
}

TEST_P(Navigator, WithoutANeighbourNothingOpens) {
    for (const Direction direction : {Direction::EastOf, Direction::SouthOf})
        EXPECT_FALSE(navigator.swipeTo(direction));
    EXPECT_EQ(manager.secondPage(), nullptr);
    EXPECT_EQ(navigator.direction(), Direction::Unrelated);
}

TEST_P(Navigator, TwoFramesInOneMillisecondDoNotEndASlide) {
    EXPECT_TRUE(navigator.swipeTo(Direction::WestOf));
    EXPECT_EQ(navigator.offset(), (Point{10, 0}));
    for (int i = 0; i < 3; ++i) frame();
    EXPECT_TRUE(navigator.isAnimating());
    EXPECT_EQ(manager.activePage(), &here);
    passMillis(1000);
    frame();
    frame();
    EXPECT_EQ(manager.activePage(), &west);
}

TEST_P(Navigator, APageMayBeActiveAndSecondAtOnce) {
    manager.setSecondPage(&here);
    frame();
    EXPECT_TRUE(cycle());
    manager.setSecondPage(nullptr);
    frame();
    EXPECT_FALSE(cycle());
}

INSTANTIATE_TEST_SUITE_P(Upright, Navigator, testing::Values(0));

}  // namespace
}  // namespace Engine::Test
