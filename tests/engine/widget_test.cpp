// What a widget marks dirty, how it looks in its states, and how groups lay out.
#include "embedded-gui-engine/border.h"
#include "world.h"

using testing::ElementsAre;

namespace Engine::Test {
namespace {

class Frame : public Border {
  public:
    explicit Frame(Color color) : Border(color) {}
    void draw(Painter&, Rect) override { ++drawn; }
    int thickness() const override { return 3; }
    const char* className() const override { return "Frame"; }
    Widget* owner() const { return owner_; }
    int drawn = 0;
};

/// Remembers the content that it was given.
class Probe : public Box {
  public:
    using Box::Box;
    void draw(Painter& painter, Rect rect) override {
        if (whileDrawing) whileDrawing();
        contentRect(painter, rect);
        content = rect;
    }
    Rect content;
    std::function<void()> whileDrawing;
};

class Widgets : public World {
  protected:
    Widgets() {
        manager.setPainter(&screen.painter);
        group.linkChildren();
        page.linkChildren();
        manager.setActivePage(&page);
        draw();
    }
    void draw() {
        manager.drawFrame();
        EXPECT_FALSE(page.isDirty());
    }
    Rect marked() {
        const Rect dirty = page.dirty();
        draw();
        return dirty;
    }
    unsigned at(int x, int y) const { return screen.pixels()[static_cast<std::size_t>(y * 60 + x)]; }

    Screen screen{60, 40};
    Probe probe{{.x = 5, .y = 5, .width = 20, .height = 10, .background = 0xFF0000AA}};
    Group group{{.x = 10, .y = 10, .width = 40, .height = 20}, Layout::Fixed, list<Object>({&probe, nullptr})};
    Page page{PageParams{.children = list<Object>({nullptr, &group})}};
};

TEST_F(Widgets, SettersMarkTheirAreaOnlyOnAChange) {
    probe.setForeground(0xFF123456);
    EXPECT_EQ(marked(), (Rect{15, 15, 20, 10}));
    probe.setForeground(0xFF123456);
    probe.setHighlightFont(nullptr);
    probe.setEnabled(true);
    probe.setRectangle(probe.rectangle());
    EXPECT_EQ(marked(), Rect{});
    probe.setX(8);
    EXPECT_EQ(marked(), (Rect{15, 15, 23, 10})) << "what it leaves and where it goes";
    probe.setX(30);
    EXPECT_EQ(marked(), (Rect{18, 15, 32, 10})) << "cut to the parent";
    probe.setX(5);
    draw();
    probe.setEnabled(false);
    EXPECT_EQ(marked(), (Rect{15, 15, 20, 10}));
    probe.setForeground(0xFF000001);
    EXPECT_EQ(marked(), Rect{}) << "hidden";
    probe.setEnabled(true);
    group.setEnabled(false);
    draw();
    probe.setForeground(0xFF000002);
    EXPECT_EQ(marked(), Rect{}) << "inside a hidden group";
}

TEST_F(Widgets, AnEmptyMarkStretchesADirtyAreaToTheOrigin) {
    probe.setX(60);
    marked();
    group.setForeground(0xFF000001);
    probe.setForeground(0xFF000001);
    EXPECT_EQ(marked(), (Rect{0, 0, 50, 30}));
}

TEST_F(Widgets, MarksWhilePaintingNeedForce) {
    probe.whileDrawing = [&] { probe.setForeground(probe.currentForeground() + 1); };
    manager.drawFrame();
    EXPECT_FALSE(page.isDirty());
    probe.whileDrawing = [&] { probe.invalidateAll(true); };
    manager.drawFrame();
    EXPECT_EQ(page.dirty(), (Rect{15, 15, 20, 10}));
}

TEST_F(Widgets, DisabledWinsOverHighlighted) {
    probe.setHighlightBackground(0xFF00FF00);
    probe.setHighlighted(true);
    draw();
    EXPECT_EQ(at(15, 15), 0xFF00FF00);
    group.setDisabled(true);
    draw();
    EXPECT_EQ(at(15, 15), 0xFF000000);
    group.setDisabled(false);
    probe.setHighlighted(false);
    draw();
    EXPECT_EQ(at(15, 15), 0xFF0000AA);
    EXPECT_EQ(at(14, 15), at(35, 15));
}

TEST_F(Widgets, AHighlightColourCountsOnceItWasSet) {
    probe.setHighlighted(true);
    EXPECT_EQ(probe.currentForeground(), 0xFFFFFFFFu);
    draw();
    probe.setHighlightForeground(0xFF000000);
    EXPECT_EQ(probe.currentForeground(), 0xFF000000u) << "the value is the default, setting it is what counts";
    EXPECT_TRUE(page.isDirty());
    draw();
    group.setHighlighted(true);
    group.setHighlighted(false);
    EXPECT_FALSE(probe.isHighlighted()) << "a group takes its children along";
}

TEST_F(Widgets, PaddingAndBorderShrinkTheContent) {
    Frame frame(0), highlight(0);
    probe.setPadding(2);
    draw();
    EXPECT_EQ(probe.content, (Rect{17, 17, 16, 6}));
    EXPECT_EQ(at(15, 15), 0xFF0000AA) << "without a border all of it is filled";
    probe.setBorder(&frame);
    probe.setHighlightBorder(&highlight);
    EXPECT_EQ(frame.owner(), &probe);
    draw();
    EXPECT_EQ(probe.content, (Rect{20, 20, 10, 0}));
    EXPECT_EQ(at(15, 15), at(14, 14)) << "the inside belongs to the border";
    probe.setHighlighted(true);
    draw();
    EXPECT_EQ(frame.drawn, 1);
    EXPECT_EQ(highlight.drawn, 1);
}

TEST_F(Widgets, PlacesGoThroughAllParentsAndThePage) {
    page.setOrigin(100, -50);
    EXPECT_EQ(probe.absoluteRect(), (Rect{115, -35, 20, 10}));
    EXPECT_EQ(probe.toLocal(probe.toAbsolute({3, 4})), (Point{3, 4}));
    EXPECT_TRUE(probe.holds({115, -35}));
    EXPECT_FALSE(probe.holds({135, -35}));
    EXPECT_EQ(probe.page(), &page);
    Box stray{WidgetParams{}};
    EXPECT_EQ(stray.page(), nullptr);
    stray.setForeground(1);
    stray.paint(screen.painter);
}

TEST_F(Widgets, DeferredWidgetsLieOnTopAndAreNotClipped) {
    Box cover({.x = 0, .y = 0, .width = 60, .height = 40, .background = 0xFF00AA00});
    struct Tall : Box {
        using Box::Box;
        void draw(Painter& painter, Rect rect) override {
            if (!page()->isDrawingDeferred()) {
                page()->defer(this);
                return;
            }
            rect.height = 20;
            painter.fill(rect);
        }
    } tall({.x = 4, .y = 4, .width = 4, .height = 4, .background = 0xFFAA0000});
    Page both({.children = list<Object>({&tall, &cover})});
    both.linkChildren();
    manager.setActivePage(&both);
    for (int frame = 0; frame < 2; ++frame) {
        manager.drawFrame();
        EXPECT_EQ(at(5, 23), 0xFFAA0000);
        EXPECT_EQ(at(5, 24), 0xFF00AA00);
        EXPECT_FALSE(both.hasDeferred());
    }
    for (std::size_t i = 0; i < Page::DeferredSlots; ++i) EXPECT_TRUE(both.defer(&tall));
    EXPECT_FALSE(both.defer(&tall));
}

TEST_F(Widgets, FocusableWidgetsReactWhileFocusedAndRowsWhileHighlighted) {
    Field field{WidgetParams{}};
    Group row({}, Layout::Fixed, {}, Group::Reacts::WhenHighlighted), bar{WidgetParams{}};
    EXPECT_FALSE(field.isEnabled());
    field.focused = true;
    EXPECT_TRUE(field.isEnabled());
    EXPECT_TRUE(bar.isEnabled());
    EXPECT_FALSE(row.isEnabled());
    row.setHighlighted(true);
    EXPECT_TRUE(row.isEnabled());
    row.setDisabled(true);
    EXPECT_FALSE(row.isEnabled());
}

class Groups : public World {
  protected:
    /// Draws the group as the only child of a page; gives the places of its children.
    std::vector<Rect> places(Group& group) {
        Page page({.children = list<Object>({&group})});
        page.linkChildren();
        group.linkChildren();
        manager.setPainter(&screen.painter);
        manager.setActivePage(&page);
        manager.drawFrame();
        manager.setActivePage(nullptr);
        std::vector<Rect> result;
        for (Object* child : group.children())
            if (const Widget* widget = asWidget(child)) result.push_back(widget->rectangle());
        group.setParent(nullptr);
        return result;
    }
    Screen screen{60, 40};
    Box a{{.x = 1, .y = 1, .width = 10, .height = 4}}, b{{.x = 2, .y = 2, .width = 5, .height = 8}};
    Box hidden{{.width = 7, .height = 2, .enabled = false}};
};

TEST_F(Groups, RowsAndColumnsPlaceTheShownChildren) {
    const auto kids = list<Object>({&a, nullptr, &hidden, &b});
    Group row({.width = 60, .height = 40, .verticalAlign = Painter::Align::Centre}, Layout::Row, kids);
    EXPECT_THAT(places(row), ElementsAre(Rect{0, 2, 10, 4}, hidden.rectangle(), Rect{10, 0, 5, 8}));
    EXPECT_EQ(row.rectangle(), (Rect{0, 0, 60, 8})) << "its height is the highest child's";
    Group end({.width = 60, .horizontalAlign = Painter::Align::End, .verticalAlign = Painter::Align::End}, Layout::Row,
              kids);
    EXPECT_THAT(places(end), ElementsAre(Rect{38, 4, 10, 4}, hidden.rectangle(), Rect{48, 0, 5, 8}))
        << "hidden children count for the width";
    Group column({.width = 21, .horizontalAlign = Painter::Align::Centre, .padding = 2}, Layout::Column, kids);
    EXPECT_THAT(places(column), ElementsAre(Rect{5, 2, 10, 4}, hidden.rectangle(), Rect{8, 6, 5, 8}));
    EXPECT_EQ(column.height(), 4 + 2 + 8 + 2 * 2);
}

TEST_F(Groups, HalfPixelsGoTowardsTheStart) {
    Group narrow({.width = 8, .horizontalAlign = Painter::Align::Centre}, Layout::Column, list<Object>({&a, &b}));
    EXPECT_THAT(places(narrow), ElementsAre(Rect{-1, 0, 10, 4}, Rect{1, 4, 5, 8}));
    narrow.setWidth(9);
    EXPECT_THAT(places(narrow), ElementsAre(Rect{-1, 0, 10, 4}, Rect{2, 4, 5, 8}));
}

TEST_F(Groups, SizesFollowParentAndChildrenUnlessFixed) {
    Group free({.x = 3, .width = 9, .height = 1}, Layout::Free, list<Object>({&a, &b}));
    Group fixed({.width = 9, .height = 1}, Layout::Fixed, list<Object>({&hidden}));
    Group outer({.width = 50, .padding = 4}, Layout::Free, list<Object>({&free, &fixed}));
    Page page({.children = list<Object>({&outer})});
    page.linkChildren();
    outer.linkChildren();
    free.linkChildren();
    fixed.linkChildren();
    EXPECT_EQ(free.rectangle(), (Rect{3, 0, 42, 10}));
    EXPECT_EQ(fixed.rectangle(), (Rect{0, 0, 9, 1}));
    EXPECT_EQ(outer.width(), 50) << "a page has no width to follow";
    free.setPadding(1);
    EXPECT_EQ(free.height(), 12);
}

}  // namespace
}  // namespace Engine::Test
