// Page changes, the history, focus, and what happens on entering and leaving.
#include "embedded-gui-engine/callbackobserver.h"
#include "embedded-gui-engine/historyclear.h"
#include "embedded-gui-engine/historygoback.h"
#include "embedded-gui-engine/navigateto.h"
#include "embedded-gui-engine/pagelistener.h"
#include "embedded-gui-engine/stringvariable.h"
#include "world.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace Engine::Test {
namespace {

struct NameVariable : StringVariable {
    const char* name() const override { return "PageName"; }
    const char* value() const override { return text.c_str(); }
    int flags() const override { return 0; }
    bool setValue(const char* value) override {
        text = value;
        return true;
    }
    int size() const override { return 100; }
    std::string text = "untouched";
};

class Pages : public World {};

TEST_F(Pages, LeavingAndEnteringRunInOrder) {
    struct Listener : PageListener {
        explicit Listener(Journal& j) : journal(j) {}
        void pageEntered(Page& page) override { journal.push_back(std::string("listener ") + page.objectName()); }
        Journal& journal;
    } listener(journal);
    struct Child : Box {
        Child(Journal& j, const WidgetParams& params) : Box(params), journal(j) {}
        void onPageState(PagePhase phase) override {
            journal.push_back(phase == PagePhase::Entering ? "child entering" : "child leaving");
        }
        Journal& journal;
    } child(journal, {.width = 4, .height = 4});
    NameVariable name;
    Page first({.name = "First",
                .title = "one",
                .children = list<Object>({&child, nullptr}),
                .behavior = {.reactions = list<Reaction>(
                                 {says(Event_PageEntered, "entered first"), says(Event_PageExited, "exited first")})}});
    Page second(
        {.name = "Second", .behavior = {.reactions = list<Reaction>({says(Event_PageEntered, "entered second")})}});
    manager.setPageListener(&listener);
    manager.setPageNameVariable(&name);
    manager.setActivePage(&first);
    EXPECT_THAT(said(), ElementsAre("child entering", "entered first", "listener First"));
    EXPECT_EQ(name.text, "one");
    EXPECT_TRUE(first.isDirty());
    manager.setActivePage(&second);
    EXPECT_THAT(said(), ElementsAre("exited first", "child leaving", "entered second", "listener Second"));
    EXPECT_EQ(name.text, "");
    EXPECT_FALSE(first.isActive());
    NavigateTo nowhere(nullptr);
    EXPECT_TRUE(nowhere.execute());
    EXPECT_EQ(manager.activePage(), nullptr);
    EXPECT_FALSE(cycle());
    manager.drawFrame();
}

TEST_F(Pages, WaitingObserversAreRefreshedOnceOnEntering) {
    static int updates;
    updates = 0;
    CallbackObserver counter([](CallbackObserver*, std::intptr_t, std::intptr_t) { ++updates; }), other;
    Observer* storage[1];
    Page page({.behavior = {.observerStorage = storage}});
    EXPECT_TRUE(page.queueObserver(&counter));
    EXPECT_TRUE(page.queueObserver(&counter)) << "it waits already";
    EXPECT_FALSE(page.queueObserver(&other));
    EXPECT_TRUE(logged("the model reserved 1 places"));
    manager.setActivePage(&page);
    manager.setActivePage(&page);
    EXPECT_EQ(updates, 1);
}

TEST_F(Pages, OnlyMarkedPagesGoIntoTheHistory) {
    Page home({.inHistory = true}), popup({}), menu({.inHistory = true});
    NavigateTo toPopup(&popup), toMenu(&menu);
    HistoryGoBack back;
    EXPECT_FALSE(back.execute());
    manager.setActivePage(&home);
    toPopup.execute();
    toMenu.execute();
    EXPECT_THAT(manager.history(), ElementsAre(&home));
    EXPECT_TRUE(back.execute());
    EXPECT_EQ(manager.activePage(), &home);
    EXPECT_FALSE(back.execute());
    EXPECT_EQ(manager.activePage(), &home);
    toMenu.execute();
    EXPECT_TRUE(HistoryClear().execute());
    EXPECT_THAT(manager.history(), IsEmpty());
}

TEST_F(Pages, AFullHistoryForgetsItsOldestQuarter) {
    std::deque<Page> pages;
    for (int i = 0; i < 35; ++i) pages.emplace_back(PageParams{.inHistory = true});
    for (int i = 0; i < 34; ++i) manager.navigateTo(&pages[static_cast<std::size_t>(i)]);
    EXPECT_THAT(manager.history(), SizeIs(33));
    EXPECT_FALSE(logged("history buffer is full"));
    manager.navigateTo(&pages[34]);
    EXPECT_THAT(manager.history(), SizeIs(26));
    EXPECT_EQ(manager.history().front(), &pages[8]);
    EXPECT_TRUE(logged("2 Page history buffer is full, removing oldest entries."));
}

TEST_F(Pages, APageChangeInsideAPageChangeEndsOnTheInnerPage) {
    Page target({.title = "target"});
    Page gate(
        {.title = "gate",
         .behavior = {.reactions = list<Reaction>({does(Event_PageEntered, [&] { manager.navigateTo(&target); })})}});
    NameVariable name;
    manager.setPageNameVariable(&name);
    manager.setActivePage(&gate);
    EXPECT_EQ(manager.activePage(), &target);
    EXPECT_TRUE(target.isActive());
    EXPECT_FALSE(gate.isActive());
    EXPECT_EQ(name.text, "target");
}

TEST_F(Pages, CyclesOfPageChangesAreRefused) {
    Page *pingPage, *pongPage;
    Page ping(
        {.name = "Ping",
         .behavior = {.reactions = list<Reaction>({does(Event_PageEntered, [&] { manager.navigateTo(pongPage); })})}});
    Page pong(
        {.name = "Pong",
         .behavior = {.reactions = list<Reaction>({does(Event_PageEntered, [&] { manager.navigateTo(pingPage); })})}});
    Page fleeing(
        {.behavior = {.reactions = list<Reaction>({does(Event_PageExited, [&] { manager.navigateTo(&ping); })})}});
    pingPage = &ping;
    pongPage = &pong;
    manager.setActivePage(&ping);
    EXPECT_TRUE(logged("0 Page changes are nested more than 8 deep, going to Ping is refused"));
    EXPECT_TRUE(manager.activePage()->isActive());
    EXPECT_NE(ping.isActive(), pong.isActive());
    manager.setActivePage(nullptr);
    manager.setActivePage(&fleeing);
    Page calm({});
    manager.setActivePage(&calm);
    EXPECT_EQ(manager.activePage(), &calm);
    for (Page* page : {&ping, &pong, &fleeing}) EXPECT_FALSE(page->isActive());
}

TEST_F(Pages, OverlaysAreEnteredOnceAtRegistration) {
    Page overlay({.enabled = false,
                  .behavior = {.reactions = list<Reaction>(
                                   {says(Event_PageEntered, "entered"), says(Event_PageExited, "exited")})}});
    const auto overlays = list<Page>({&overlay, nullptr});
    manager.setOverlays(overlays);
    overlay.setVisible(true);
    overlay.setVisible(false);
    EXPECT_THAT(said(), ElementsAre("entered"));
    EXPECT_TRUE(overlay.isActive());
}

class Focus : public World {
  protected:
    Focus() {
        page.linkChildren();
        for (int i = 0; i < 6; ++i) slots[i].setParent(&page);
    }
    Page page{PageParams{.name = "Form"}};
    Field slots[6] = {Field({.width = 4, .height = 4, .name = "a"}),
                      Field(WidgetParams{}),
                      Field(WidgetParams{}),
                      Field(WidgetParams{}),
                      Field(WidgetParams{}),
                      Field(WidgetParams{})};
};

TEST_F(Focus, FourSlotsAreTakenInOrder) {
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(page.addFocus(&slots[i]));
    EXPECT_TRUE(page.addFocus(&slots[1])) << "it has the focus already";
    EXPECT_FALSE(page.addFocus(&slots[4]));
    page.clearFocus(&slots[2]);
    EXPECT_TRUE(page.addFocus(&slots[4]));
    EXPECT_EQ(page.focus(2), &slots[4]);
    EXPECT_TRUE(page.setFocus(&slots[5]));
    EXPECT_EQ(page.focus(0), &slots[5]);
    for (int i = 0; i < 5; ++i) EXPECT_FALSE(slots[i].focused);
    manager.setActivePage(&page);
    manager.setActivePage(nullptr);
    EXPECT_FALSE(slots[5].focused) << "leaving the page clears the focus";
}

TEST_F(Focus, OnlyFocusableOperableWidgetsTakeIt) {
    Box plain({.name = "plain"});
    plain.setParent(&page);
    EXPECT_FALSE(page.addFocus(&plain));
    EXPECT_TRUE(logged("1 Widget (plain) not focusable"));
    EXPECT_FALSE(page.addFocus(nullptr));
    slots[0].setDisabled(true);
    EXPECT_FALSE(page.setFocus(&slots[0]));
    page.clearFocus(nullptr);
}

TEST_F(Focus, AGroupThatGoesAwayHandsItsFocusOver) {
    Field inside{WidgetParams{}}, heir({.name = "heir"});
    Group inner({}, Layout::Fixed, list<Object>({nullptr, &inside}));
    Group outer({}, Layout::Fixed, list<Object>({&inner}), Group::Reacts::Always, &heir);
    Page form({.children = list<Object>({&outer, &heir})});
    for (Object* object : {static_cast<Object*>(&form), static_cast<Object*>(&outer), static_cast<Object*>(&inner)})
        object->linkChildren();
    manager.setActivePage(&form);
    outer.setEnabled(false);
    EXPECT_FALSE(heir.focused) << "nothing in the group had the focus";
    outer.setEnabled(true);
    form.setFocus(&inside);
    outer.setEnabled(false);
    EXPECT_FALSE(inside.focused);
    EXPECT_TRUE(heir.focused);
    EXPECT_EQ(form.focus(0), &heir);
    outer.setEnabled(true);
    form.setFocus(&inside);
    outer.setDisabled(true);
    EXPECT_FALSE(inside.focused);
    EXPECT_EQ(form.focus(0), &heir);
}

}  // namespace
}  // namespace Engine::Test
