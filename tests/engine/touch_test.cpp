// Gestures, the routing of touches, and the widget that holds one.
#include "world.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace Engine::Test {
namespace {

class Touch : public World {
  protected:
    Touch() { listenToGestures(); }
    Journal gesture(int fromX, int fromY, int toX, int toY, int ms) {
        down(fromX, fromY);
        passMillis(ms);
        up(toX, toY);
        cycle();
        return said();
    }
};

TEST_F(Touch, ATapIsWithinNinetyNineSquarePixels) {
    EXPECT_THAT(gesture(50, 50, 59, 50, 900), ElementsAre("start", "end", "touched"));
    EXPECT_THAT(gesture(50, 50, 57, 57, 900), ElementsAre("start", "end", "touched"));
    EXPECT_THAT(gesture(50, 50, 60, 50, 900), ElementsAre("start", "end"));
    EXPECT_THAT(gesture(50, 50, 57, 58, 100), ElementsAre("start", "end", "down"));
}

TEST_F(Touch, ASwipeIsFasterThanHalfASecond) {
    EXPECT_THAT(gesture(50, 50, 90, 50, 499), ElementsAre("start", "end", "right"));
    EXPECT_THAT(gesture(50, 50, 90, 50, 500), ElementsAre("start", "end"));
    EXPECT_THAT(gesture(50, 50, 10, 50, 100), ElementsAre("start", "end", "left"));
    EXPECT_THAT(gesture(50, 50, 50, 10, 100), ElementsAre("start", "end", "up"));
    EXPECT_THAT(gesture(50, 50, 70, 70, 100), ElementsAre("start", "end", "down")) << "a tie is vertical";
    EXPECT_THAT(gesture(50, 50, 30, 30, 100), ElementsAre("start", "end", "up"));
}

TEST_F(Touch, PathsAddAbsoluteSteps) {
    down(10, 10);
    move(15, 8);
    move(12, 11);
    EXPECT_EQ(manager.gesture().path, (Point{8, 5}));
    EXPECT_EQ(manager.gesture().delta, (Point{-3, 3}));
    down(0, 0);
    EXPECT_EQ(manager.gesture().path, (Point{0, 0}));
}

TEST_F(Touch, TheGrabberGetsEverythingAndSuppressesTheGesture) {
    Pad pad({.x = 10, .y = 10, .width = 10, .height = 10});
    Page page({.children = list<Object>({&pad})});
    page.linkChildren();
    manager.setActivePage(&page);
    down(10, 10);
    touch(TouchEvent::Phase::Down, 90, 90, 1);
    touch(TouchEvent::Phase::Move, 95, 90, 1);
    EXPECT_EQ(manager.gesture().last, (Point{10, 10})) << "a second finger does not move the gesture";
    up(90, 10);
    EXPECT_THAT(pad.events, SizeIs(4));
    EXPECT_EQ(manager.touchGrabber(), nullptr);
    cycle();
    EXPECT_THAT(said(), ElementsAre("start"));
}

TEST_F(Touch, AFalseAnswerReleasesTheGrabberAndTheGestureGoesOn) {
    Pad pad({.width = 10, .height = 10}), below({.width = 10, .height = 10});
    Page page({.children = list<Object>({&pad, &below})});
    page.linkChildren();
    manager.setActivePage(&page);
    down(0, 0);
    pad.answer = false;
    up(0, 0);
    cycle();
    EXPECT_THAT(said(), ElementsAre("start", "end", "touched"));
    EXPECT_THAT(below.events, IsEmpty()) << "the record is not offered to others in the same call";
}

TEST_F(Touch, AGrabberThatIsHiddenKeepsTheTouch) {
    Pad pad({.width = 10, .height = 10});
    Page page({.children = list<Object>({&pad})});
    page.linkChildren();
    manager.setActivePage(&page);
    down(0, 0);
    pad.setEnabled(false);
    manager.setActivePage(nullptr);
    move(5, 5);
    up(5, 5);
    EXPECT_THAT(pad.events, SizeIs(3));
}

TEST_F(Touch, LowerIndicesWinChildrenBeforeTheirParentAndEdgesBelongToTheWidget) {
    struct PadGroup : Group {
        using Group::Group;
        bool acceptsTouch() const override { return true; }
        bool handleTouch(const TouchEvent&) override { return ++touched; }
        int touched = 0;
    };
    Pad inner({.x = 2, .y = 2, .width = 4, .height = 4}), late({.width = 30, .height = 30});
    PadGroup group({.x = 10, .y = 10, .width = 10, .height = 10}, Layout::Fixed, list<Object>({nullptr, &inner}));
    Page page({.children = list<Object>({&group, nullptr, &late})});
    page.linkChildren();
    group.linkChildren();
    manager.setActivePage(&page);
    const auto takerAt = [&](int x, int y) { return GuiManager::offerTouch(page, {x, y, TouchEvent::Phase::Down, 0}); };
    EXPECT_EQ(takerAt(12, 12), &inner);
    EXPECT_EQ(takerAt(15, 15), &inner);
    EXPECT_EQ(takerAt(16, 15), &group);
    EXPECT_EQ(takerAt(19, 19), &group);
    EXPECT_EQ(takerAt(20, 19), &late);
    EXPECT_EQ(takerAt(30, 0), nullptr);
    inner.answer = false;
    EXPECT_EQ(takerAt(12, 12), &group) << "a refusal does not end the search";
    group.setDisabled(true);
    EXPECT_EQ(takerAt(12, 12), &late);
    page.setFlag(Object::FlagEnabled, false);
    EXPECT_EQ(takerAt(12, 12), nullptr);
}

TEST_F(Touch, AModalOverlayTakesTheRecordWhateverItAnswers) {
    Pad onPage({.width = 10, .height = 10}), onOverlay({.x = 20, .width = 10, .height = 10});
    Page page({.children = list<Object>({&onPage})});
    Page overlay({.children = list<Object>({&onOverlay})});
    page.linkChildren();
    overlay.linkChildren();
    const auto overlays = list<Page>({&overlay});
    manager.setOverlays(overlays);
    manager.setActivePage(&page);
    const auto tap = [&](int x) {
        down(x, 0);
        Widget* grabber = manager.touchGrabber();
        up(x, 0);
        return grabber;
    };
    EXPECT_EQ(tap(0), &onPage);
    EXPECT_EQ(tap(20), &onOverlay);
    overlay.setFlag(Page::FlagModal, true);
    EXPECT_EQ(tap(0), nullptr);
    overlay.setVisible(false);
    EXPECT_EQ(tap(0), &onPage);
    EXPECT_EQ(tap(20), nullptr);
}

}  // namespace
}  // namespace Engine::Test
