// Thousands of random events, touches, page changes and setter calls on generated trees, with what must always hold:
// the dirty area covers every changed pixel, a full redraw equals the picture on the screen, no queue grows, the
// history stays in its limit, and only operable widgets are given the focus.
#include <random>

#include "world.h"

namespace Engine::Test {
namespace {

constexpr int Width = 48, Height = 32;

class RandomWorld : public World, public testing::WithParamInterface<unsigned> {
  protected:
    RandomWorld() {
        for (int i = 0; i < 3; ++i) pages.emplace_back(pageParams(i != 1));
        overlay.linkChildren();
        for (Page& page : pages) page.linkChildren();
        for (Group& group : groups) group.linkChildren();
        for (Widget* widget : widgets)
            if (widget->parentWidget() == nullptr) widget->setRectangle({2, 3, 30, 20});
        manager.setPainter(&screen.painter);
        manager.setOverlays(overlays);
        manager.setActivePage(&pages[0]);
    }

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); }
    std::int16_t coordinate(int limit) { return static_cast<std::int16_t>(below(limit + 16) - 8); }
    /// A page's own widgets begin on the screen: a clip that begins outside is moved, not cut, by the painter.
    std::int16_t coordinate(const Widget& widget, int limit) {
        return widget.parentWidget() != nullptr ? coordinate(limit) : static_cast<std::int16_t>(below(limit));
    }
    Color color() { return 0xFF000000u | static_cast<Color>(below(0x1000000)); }

    PageParams pageParams(bool inHistory) {
        return {.name = "page",
                .backgroundColor = color(),
                .inHistory = inHistory,
                .children = children(3),
                .behavior = {.reactions = list<Reaction>({does(Event_TouchTouched, [this] { step(); }),
                                                          does(200, [this] { changePage(); }),
                                                          does(201, [this] { manager.postEvent(200); })})}};
    }
    WidgetParams params() {
        return {.x = coordinate(Width),
                .y = coordinate(Height),
                .width = static_cast<std::int16_t>(below(Width)),
                .height = static_cast<std::int16_t>(below(Height)),
                .foreground = color(),
                .background = color(),
                .disabledBackground = color(),
                .padding = static_cast<std::uint16_t>(below(3))};
    }
    std::span<Object* const> children(int depth) {
        auto& array = arrays.emplace_back();
        for (int count = 2 + below(3); count > 0; --count) array.push_back(child(depth));
        return array;
    }
    Object* child(int depth) {
        switch (below(depth > 0 ? 4 : 2)) {
            case 0: return remember(fields.emplace_back(params()));
            case 1: return below(5) == 0 ? nullptr : remember(pads.emplace_back(params()));
            default: {
                const auto kids = children(depth - 1);
                return remember(groups.emplace_back(params(), below(2) == 0 ? Layout::Free : Layout::Fixed, kids));
            }
        }
    }
    Widget* remember(Widget& widget) {
        widgets.push_back(&widget);
        return &widget;
    }

    void changePage() {
        Page* page = &pages[static_cast<std::size_t>(below(3))];
        switch (below(3)) {
            case 0: manager.setActivePage(page); break;
            case 1: manager.navigateTo(page); break;
            default: manager.goBack(); break;
        }
    }
    void changeWidget(Widget& widget) {
        switch (below(12)) {
            case 0: widget.setBackground(color()); break;
            case 1: widget.setX(coordinate(widget, Width)); break;
            case 2: widget.setY(coordinate(widget, Height)); break;
            case 3: widget.setHeight(static_cast<std::int16_t>(below(Height))); break;
            case 4: widget.setRectangle({coordinate(widget, Width), coordinate(widget, Height), 9, 5}); break;
            case 5: widget.setEnabled(below(3) != 0); break;
            case 6: widget.setDisabled(below(3) == 0); break;
            case 7: widget.setHighlighted(below(2) == 0); break;
            case 8: widget.setHighlightBackground(color()); break;
            case 9: widget.setPadding(static_cast<std::uint16_t>(below(4))); break;
            case 10: widget.setDisabledBackground(color()); break;
            default: giveFocus(widget); break;
        }
    }
    void giveFocus(Widget& widget) {
        Page* page = widget.page();
        if (page == nullptr) return;
        const bool given = below(2) == 0 ? page->setFocus(&widget) : page->addFocus(&widget);
        EXPECT_TRUE(!given || (widget.isFocusable() && widget.isOperable()));
    }
    void touchSomewhere() {
        touch(static_cast<TouchEvent::Phase>(below(3)), below(Width), below(Height), below(8) == 0);
        passMillis(below(300));
    }
    void step() {
        switch (below(10)) {
            case 0: manager.postEvent(static_cast<EventId>(199 + below(4))); break;
            case 1: touchSomewhere(); break;
            case 2: overlay.setVisible(below(2) == 0); break;
            case 3: manager.activePage()->setBackgroundColor(color()); break;
            default: changeWidget(*widgets[static_cast<std::size_t>(below(static_cast<int>(widgets.size())))]); break;
        }
    }
    void checkPicture(int round) {
        const bool needed = cycle();
        const std::vector<unsigned> before = screen.pixels();
        manager.drawFrame(GuiManager::Clip::DirtyArea);
        ASSERT_FALSE(cycle()) << "drawing leaves nothing dirty, round " << round;
        if (!needed) {
            ASSERT_EQ(before, screen.pixels()) << "nothing was to be drawn, round " << round;
        }
        manager.setPainter(&full.painter);
        manager.drawFrame(GuiManager::Clip::WholePage);
        manager.setPainter(&screen.painter);
        ASSERT_EQ(screen.pixels(), full.pixels()) << "a pixel changed outside the dirty area, round " << round;
    }

    std::mt19937 random{GetParam()};
    std::deque<std::vector<Object*>> arrays;
    std::deque<Field> fields;
    std::deque<Pad> pads;
    std::deque<Group> groups;
    std::vector<Widget*> widgets;
    Screen screen{Width, Height}, full{Width, Height};
    std::deque<Page> pages;
    Page overlay{PageParams{.enabled = false, .noBackground = true, .children = children(1)}};
    std::span<Page* const> overlays = list<Page>({&overlay});
};

TEST_P(RandomWorld, TheInvariantsHold) {
    for (int round = 0; round < 1500; ++round) {
        for (int steps = below(4); steps >= 0; --steps) step();
        checkPicture(round);
        if (HasFatalFailure()) return;
        ASSERT_LE(manager.history().size(), 33u);
        ASSERT_EQ(manager.droppedEvents(), 0u);
        ASSERT_EQ(manager.droppedReactions(), 0u);
        for (Pad& pad : pads) pad.events.clear();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWorld, testing::Range(1u, 21u));

}  // namespace
}  // namespace Engine::Test
