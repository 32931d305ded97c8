#include "embedded-gui-engine/overlappingmenu.h"

#include <array>

#include "tests/engine/world.h"

namespace ScaleTest {
namespace {

using Engine::Object;
using Engine::OverlappingMenu;
using Engine::Page;
using testing::ElementsAre;

class Depth : public Engine::VariableBase<int> {
  public:
    const char* name() const override { return "depth"; }
    int value() const override { return value_; }
    int flags() const override { return 0; }
    bool setValue(int value) override {
        value_ = value;
        return true;
    }

  private:
    int value_ = -1;
};

/// A menu with tabs of 30 pixels over a screen of 240, and three pages in colours of their own.
class Menu : public Engine::Test::World {
  protected:
    Menu() {
        manager.setPainter(&screen_.painter);
        menu.setParent(&owner);
        owner.setChildren(ownerTops_.data(), 1);
        for (int i = 0; i < 3; ++i) page(i).setChildren(&pageTops_[static_cast<std::size_t>(i)], 1);
        manager.setActivePage(&owner);
    }
    ~Menu() override { manager.setPainter(nullptr); }

    Page& page(int index) { return pages_[static_cast<std::size_t>(index)]; }
    void draw() { manager.drawFrame(); }
    void settle() {
        passMillis(300);
        draw();
        draw();
    }
    void tap(int x) {
        down(x, 5);
        up(x, 5);
    }
    /// The pages as letters along the top line, one a ten pixels; '.' is the owner.
    std::string strip() {
        draw();
        std::string result;
        const std::string line = screen_.picture([](unsigned color) {
            return color == 0xFFFF0000 ? 'A' : color == 0xFF00FF00 ? 'B' : color == 0xFF0000FF ? 'C' : '.';
        })[0];
        for (std::size_t x = 5; x < line.size(); x += 10) result += line[x];
        return result;
    }
    std::string active() {
        std::string result;
        if (owner.isActive()) result += 'o';
        for (int i = 0; i < 3; ++i)
            if (page(i).isActive()) result += static_cast<char>('A' + i);
        return result;
    }
    void openTwo() {
        menu.open(&page(0));
        settle();
        menu.setDepth(1);
        menu.open(&page(1));
        settle();
    }

    Engine::Test::Screen screen_{240, 10};
    Depth depth;
    std::array<Page*, 9> storage_{};
    OverlappingMenu menu{{.width = 240, .height = 10}, storage_, 300, 30, &depth};
    Engine::Test::Pad pads_[3] = {Engine::Test::Pad({.width = 30, .height = 10, .background = 0}),
                                  Engine::Test::Pad({.width = 30, .height = 10, .background = 0}),
                                  Engine::Test::Pad({.width = 30, .height = 10, .background = 0})};
    Page owner{{.name = "owner"}};

  private:
    std::array<Object*, 1> ownerTops_{&menu};
    std::array<Object*, 3> pageTops_{&pads_[0], &pads_[1], &pads_[2]};
    std::span<Engine::Reaction* const> heard_ = list<Engine::Reaction>({says(200, "heard")});
    Page pages_[3] = {Page({.name = "A", .backgroundColor = 0xFFFF0000, .behavior = {.reactions = heard_}}),
                      Page({.name = "B", .backgroundColor = 0xFF00FF00, .behavior = {.reactions = heard_}}),
                      Page({.name = "C", .backgroundColor = 0xFF0000FF})};
};

TEST_F(Menu, APageOpensAtOnceWhileTheOwnerIsActive) {
    menu.open(&page(0));
    EXPECT_EQ(strip(), ".....................AAA");
    EXPECT_EQ(active(), "o");
    EXPECT_EQ(depth.value(), 0);
    EXPECT_THAT(std::vector<Page*>(menu.opened().begin(), menu.opened().end()), ElementsAre(&page(0)));
    menu.open(&page(0));
    EXPECT_EQ(depth.value(), 1) << "it is open already, and now comes to the front";
    EXPECT_EQ(active(), "A");
}

TEST_F(Menu, FurtherPagesSlideIn) {
    menu.open(&page(0));
    settle();
    menu.setDepth(1);
    menu.open(&page(1));
    EXPECT_EQ(active(), "B");
    EXPECT_EQ(depth.value(), 2);
    EXPECT_EQ(strip(), ".....................AAA") << "B begins behind the edge";
    passMillis(150);
    EXPECT_EQ(strip(), "..............AAAAAAAABB") << "300 * 210 / 450 and 210 + 15";
    EXPECT_TRUE(owner.isDirty()) << "the transition keeps itself going";
    passMillis(150);
    EXPECT_EQ(strip(), "..........AAAAAAAAAAABBB");
    strip();
    EXPECT_FALSE(owner.isDirty());
    EXPECT_EQ(menu.opened().size(), 2);
    EXPECT_TRUE(menu.opening().isEmpty());
}

TEST_F(Menu, ClosingGoesTheSameWayBack) {
    openTwo();
    menu.closeTop();
    EXPECT_EQ(active(), "A");
    EXPECT_EQ(strip(), "..........AAAAAAAAAAABBB");
    passMillis(150);
    EXPECT_EQ(strip(), "..............AAAAAAAABB");
    settle();
    EXPECT_EQ(strip(), ".....................AAA");
    EXPECT_TRUE(menu.closing().isEmpty());
    menu.closeTop();
    EXPECT_EQ(menu.opened().size(), 1) << "the last one stays";
    menu.closeAll();
    EXPECT_EQ(active(), "o");
}

TEST_F(Menu, ATapUncoversThePageBelowIt) {
    openTwo();
    tap(150);
    EXPECT_EQ(active(), "A");
    EXPECT_EQ(depth.value(), 1);
    settle();
    tap(100);
    EXPECT_EQ(active(), "o") << "left of the only tab";
    tap(220);
    EXPECT_EQ(active(), "A");
    menu.open(&page(1));
    settle();
    tap(50);
    EXPECT_EQ(active(), "o");
    EXPECT_EQ(menu.closing().size(), 1);
}

TEST_F(Menu, EventsAndTouchesGoToTheActivePage) {
    openTwo();
    said();
    send(200);
    EXPECT_THAT(said(), ElementsAre("heard")) << "once, from B alone";
    down(215, 5);
    EXPECT_EQ(pads_[1].events.size(), 1u);
    EXPECT_TRUE(pads_[0].events.empty());
    up(215, 5);
    EXPECT_EQ(pads_[1].events.size(), 2u);
}

TEST_F(Menu, APageInsideAsksItsOwnerForARepaint) {
    openTwo();
    EXPECT_FALSE(cycle());
    pads_[1].setBackground(0x01000000);
    EXPECT_TRUE(cycle());
    EXPECT_EQ(owner.dirty(), (Engine::Rect{210, 0, 30, 10}));
    draw();
    page(1).redrawAll();
    cycle();
    EXPECT_EQ(owner.dirty(), (Engine::Rect{0, 0, 240, 10}));
    draw();
    page(1).redrawAll();
    menu.setEnabled(false);
    draw();
    EXPECT_FALSE(cycle()) << "hidden, the menu cannot draw them";
}

TEST_F(Menu, PagesEnterAndLeaveWithTheirOwner) {
    openTwo();
    Page other({.name = "other"});
    manager.setActivePage(&other);
    EXPECT_EQ(active(), "");
    manager.setActivePage(&owner);
    EXPECT_EQ(active(), "B") << "the depth is kept";
    manager.setActivePage(nullptr);
}

TEST_F(Menu, HoldsNoMoreThanItsRoom) {
    openTwo();
    menu.open(&page(2));
    menu.open(&page(0));
    EXPECT_TRUE(logged("has room for 3 pages only, A is not opened"));
    EXPECT_EQ(depth.value(), 3);
    settle();
    for (int i = 0; i < 5; ++i) {
        menu.closeAll();
        menu.setDepth(1);
        menu.open(&page(1));
        menu.open(&page(2));
        draw();
    }
    settle();
    EXPECT_LE(menu.opened().size(), 3);
    EXPECT_TRUE(menu.closing().isEmpty());
}

TEST_F(Menu, OddMeasuresAndEmptyPlacesAreDrawn) {
    menu.closeAll();
    menu.closeTop();
    tap(100);
    tap(230);
    EXPECT_EQ(strip(), "........................");
    std::array<Page*, 6> storage{};
    OverlappingMenu odd({.width = 20, .height = 10}, storage, 0, 30);
    odd.setParent(&owner);
    odd.open(&page(0));
    odd.paint(screen_.painter);
    odd.paint(screen_.painter);
    EXPECT_EQ(odd.opened().size(), 1) << "without a duration it is there with the first frame";
    EXPECT_EQ(odd.routeTouch({5, 5, Engine::TouchEvent::Phase::Up, 0}), nullptr);
    manager.setPageStrip(&menu);
}

Page* modelStorage[9];
[[maybe_unused]] constinit OverlappingMenu modelMenu({.width = 240}, modelStorage, 300, 30);
static_assert(std::is_trivially_destructible_v<OverlappingMenu>);

}  // namespace
}  // namespace ScaleTest
