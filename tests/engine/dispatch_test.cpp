// The order in which reactions, timers, pages and containers hear of events.
#include "embedded-gui-engine/actiongroup.h"
#include "embedded-gui-engine/condition.h"
#include "embedded-gui-engine/eventtrigger.h"
#include "embedded-gui-engine/hook.h"
#include "embedded-gui-engine/timer.h"
#include "embedded-gui-engine/trace.h"
#include "world.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace Engine::Test {
namespace {

constexpr EventId Key = 200;
constexpr EventId Other = 201;

class Dispatch : public World {};

TEST_F(Dispatch, LaterReactionsRunFirstAndAllOfThem) {
    Page page({.behavior = {.reactions = list<Reaction>(
                                {says(Key, "first"), nullptr, says(Other, "other"), says(Key, "last")})}});
    manager.setActivePage(&page);
    send(Key);
    EXPECT_THAT(said(), ElementsAre("last", "first"));
}

TEST_F(Dispatch, ReactionsNeedAMatcherTheirOwnFlagAndAnEnabledOwner) {
    Box owner({.width = 4, .height = 4});
    Reaction noMatcher({}, nullptr);
    Reaction* disabled = says(Key, "disabled");
    disabled->setEnabled(false);
    Page page({.behavior = {.reactions = list<Reaction>({says(Key, "owned", &owner), disabled, &noMatcher})}});
    manager.setActivePage(&page);
    send(Key);
    EXPECT_THAT(said(), ElementsAre("owned"));
    owner.setDisabled(true);
    send(Key);
    EXPECT_THAT(said(), IsEmpty());
    disabled->setEnabled(true);
    send(Key);
    EXPECT_THAT(said(), ElementsAre("disabled")) << "an event that found nobody ready is scanned again";
}

TEST_F(Dispatch, ATouchEventGoesToTheLastDeclaredHitOnly) {
    Box low({.x = 0, .y = 0, .width = 20, .height = 20}), high({.x = 10, .y = 0, .width = 20, .height = 20});
    Page page(
        {.children = list<Object>({&low, &high}),
         .behavior = {.reactions = list<Reaction>({says(Event_TouchStart, "anywhere"), says(Event_TouchStart, "low"),
                                                   says(Event_TouchStart, "high")}),
                      .reactionWidgets = list<Widget>({nullptr, &low, &high})}});
    page.linkChildren();
    manager.setActivePage(&page);
    const auto at = [this](int x) {
        down(x, 5);
        cycle();
        return said();
    };
    EXPECT_THAT(at(15), ElementsAre("high"));
    EXPECT_THAT(at(9), ElementsAre("low"));
    EXPECT_THAT(at(29), ElementsAre("high"));
    EXPECT_THAT(at(30), ElementsAre("anywhere"));
}

TEST_F(Dispatch, ATouchThatFoundAReactionReachesNeitherTimersNorHooks) {
    struct Bell : Hook {
        explicit Bell(const EventMatcher* matcher) : Hook(matcher) {}
        void fire() override { ++rung; }
        int rung = 0;
    } bell(on(Event_TouchStart));
    Timer timer({.interval = 10, .startMatcher = on(Event_TouchStart)});
    Reaction* reaction = says(Event_TouchStart, "hit");
    Page page(
        {.behavior = {
             .reactions = list<Reaction>({reaction}), .timers = list<Timer>({&timer}), .hooks = list<Hook>({&bell})}});
    manager.setActivePage(&page);
    send(Event_TouchStart);
    EXPECT_EQ(timer.remaining(), 0);
    reaction->setEnabled(false);
    send(Event_TouchStart);
    EXPECT_EQ(timer.remaining(), 10);
    EXPECT_EQ(bell.rung, 0);
    timer.setEnabled(false);
    send(Event_TouchStart);
    EXPECT_EQ(bell.rung, 1);
}

TEST_F(Dispatch, PagesThenOverlaysThenContainersAndAModalOverlayAlone) {
    Page page({.behavior = {.reactions = list<Reaction>({says(Key, "page")})}});
    Page low({.behavior = {.reactions = list<Reaction>({says(Key, "low")})}});
    Page high({.behavior = {.reactions = list<Reaction>({says(Key, "high")})}});
    Page modal({.enabled = false, .modal = true, .behavior = {.reactions = list<Reaction>({says(Key, "modal")})}});
    BehaviorContainer keys({.reactions = list<Reaction>({says(Key, "container")})});
    const auto overlays = list<Page>({&low, nullptr, &modal, &high});
    const auto containers = list<BehaviorContainer>({nullptr, &keys});
    manager.setOverlays(overlays);
    manager.setContainers(containers);
    manager.setActivePage(&page);
    send(Key);
    EXPECT_THAT(said(), ElementsAre("page", "low", "high", "container"));
    modal.setVisible(true);
    send(Key);
    EXPECT_THAT(said(), ElementsAre("modal", "container"));
    keys.setEnabled(false);
    send(Key);
    EXPECT_THAT(said(), ElementsAre("modal"));
}

TEST_F(Dispatch, AllTargetsSeeTheStateBeforeTheEventAndPostedEventsComeAfter) {
    Reaction* late = says(Key, "container");
    BehaviorContainer keys({.reactions = list<Reaction>({late})});
    Page page({.behavior = {.reactions = list<Reaction>({says(Other, "other"), does(Key, [&] {
                                                             late->setEnabled(false);
                                                             manager.postEvent(Other);
                                                             journal.push_back("page");
                                                         })})}});
    const auto containers = list<BehaviorContainer>({&keys});
    manager.setContainers(containers);
    manager.setActivePage(&page);
    send(Key);
    EXPECT_THAT(said(), ElementsAre("page", "container", "other"));
}

TEST_F(Dispatch, QueuesDropWhatDoesNotFitAndCountIt) {
    traceFlags.event = Trace::EventPost;
    int handled = 0;
    Page page({.behavior = {.reactions = list<Reaction>({does(Key, [&] { ++handled; })})}});
    manager.setActivePage(&page);
    for (int i = 0; i < 128; ++i) EXPECT_TRUE(manager.postEvent(Key));
    EXPECT_FALSE(manager.postEvent(Key));
    EXPECT_EQ(manager.droppedEvents(), 1u);
    EXPECT_TRUE(logged("Event queue is full, dropped 'UnknownUserEvent', 1 since the start"));
    cycle();
    EXPECT_EQ(handled, 128);

    std::vector<Reaction*> many(130, says(Key, "."));
    Page crowded({.behavior = {.reactions = many}});
    manager.setActivePage(&crowded);
    send(Key);
    EXPECT_EQ(said().size(), 128u);
    EXPECT_EQ(manager.droppedReactions(), 2u);
}

using DispatchDeathTest = Dispatch;

TEST_F(DispatchDeathTest, AThousandEventsPassAndOneMoreEndsTheProcess) {
    int left = 0, handled = 0;
    Page page({.name = "Busy", .behavior = {.reactions = list<Reaction>({does(Key, [&] {
                                                ++handled;
                                                if (--left > 0) manager.postEvent(Key);
                                            })})}});
    manager.setActivePage(&page);
    left = 1000;
    send(Key);
    EXPECT_EQ(handled, 1000);
    EXPECT_EXIT(
        {
            left = 1003;
            hooks().log = [](int, const char*, int, const char* format, va_list arguments) {
                std::vfprintf(stderr, format, arguments);
            };
            send(Key);
        },
        testing::ExitedWithCode(1),
        "Active page is Busy.*There are currently 1 events in the queue:Event 200This is FATAL, EXITING");
}

TEST_F(Dispatch, NothingIsPostedWhileInitializing) {
    GuiManager young;
    EXPECT_FALSE(young.postEvent(Key));
    EXPECT_FALSE(young.processEvents(true));
    EXPECT_EQ(young.droppedEvents(), 0u);
}

TEST_F(Dispatch, ActionGroups) {
    const auto actions = list<Action>({nullptr, action("off", true, 0), action("fails", false), action("works")});
    ActionGroup all(actions), first(actions, nullptr, Action::Enabled | Action::StopAfterFirst), empty({});
    EXPECT_FALSE(all.execute());
    EXPECT_THAT(said(), ElementsAre("fails", "works"));
    EXPECT_TRUE(first.execute());
    EXPECT_THAT(said(), ElementsAre("fails"));
    EXPECT_TRUE(empty.execute());
    all.setEnabled(false);
    EXPECT_FALSE(all.execute());
    EXPECT_THAT(said(), IsEmpty());
}

TEST_F(Dispatch, EventTriggersFireOnTheRisingEdge) {
    struct Switch : Condition {
        bool evaluate() override { return on; }
        bool on = false;
    } condition;
    EventTrigger edge(&condition, Key), every(&condition, Other, EventTrigger::Fire::OnEveryTrueUpdate);
    EventTrigger none(nullptr, Key);
    Page page({.behavior = {.reactions = list<Reaction>({says(Key, "edge"), says(Other, "every")})}});
    manager.setActivePage(&page);
    for (const bool on : {true, true, false, true}) {
        condition.on = on;
        for (EventTrigger* trigger : {&edge, &every, &none}) trigger->update();
    }
    cycle();
    EXPECT_THAT(said(), ElementsAre("edge", "every", "every", "edge", "every"));
}

class Timers : public World {
  protected:
    Timer timer(int repeat) {
        return Timer({.interval = 100,
                      .repeat = repeat,
                      .startMatcher = on(Key),
                      .stopMatcher = on(Other),
                      .tickActions = list<Action>({action("tick"), nullptr, action("off", true, 0)}),
                      .finishActions = list<Action>({action("finish")})});
    }
    Journal after(Timer& timer, int ms) {
        timer.advance(ms);
        return said();
    }
};

TEST_F(Timers, RepeatSaysHowOftenAndWhetherItFinishes) {
    Timer once = timer(1), silent = timer(0), twice = timer(2), always = timer(-1);
    for (Timer* each : {&once, &silent, &twice, &always}) each->start();
    EXPECT_THAT(after(once, 99), IsEmpty());
    EXPECT_THAT(after(once, 1), ElementsAre("tick", "finish"));
    EXPECT_THAT(after(once, 1000), IsEmpty());
    EXPECT_THAT(after(silent, 100), ElementsAre("tick"));
    EXPECT_THAT(after(silent, 1000), IsEmpty());
    EXPECT_THAT(after(twice, 1000), ElementsAre("tick"));
    EXPECT_EQ(twice.remaining(), 100) << "overshoot is not carried";
    EXPECT_THAT(after(twice, 100), ElementsAre("tick", "finish"));
    for (int i = 0; i < 5; ++i) EXPECT_THAT(after(always, 100), ElementsAre("tick"));
}

TEST_F(Timers, StartWinsOverStopAndRestartsInFull) {
    Timer both({.interval = 100, .repeat = 1, .startMatcher = on(Key), .stopMatcher = on(Key)});
    Timer plain = timer(2);
    Page page({.behavior = {.timers = list<Timer>({&both, nullptr, &plain})}});
    manager.setActivePage(&page);
    send(Key);
    EXPECT_EQ(both.remaining(), 100);
    passMillis(60);
    cycle();
    EXPECT_EQ(plain.remaining(), 40);
    send(Key);
    EXPECT_EQ(plain.remaining(), 100);
    send(Other);
    EXPECT_EQ(plain.remaining(), 0);
    plain.setEnabled(false);
    both.setEnabled(false);
    send(Key);
    EXPECT_EQ(plain.remaining(), 0);
    plain.setEnabled(true);
    send(Key);
    EXPECT_EQ(plain.remaining(), 100);
}

TEST_F(Timers, RunOnHiddenOverlaysAndDisabledContainers) {
    Timer onOverlay = timer(-1), inContainer = timer(-1);
    Page overlay({.enabled = false, .behavior = {.timers = list<Timer>({&onOverlay})}});
    BehaviorContainer container({.timers = list<Timer>({&inContainer})}, {}, {}, nullptr, false);
    const auto overlays = list<Page>({&overlay});
    const auto containers = list<BehaviorContainer>({&container});
    manager.setOverlays(overlays);
    manager.setContainers(containers);
    onOverlay.start();
    inContainer.start();
    passMillis(100);
    cycle();
    EXPECT_THAT(said(), ElementsAre("tick", "tick"));
}

}  // namespace
}  // namespace Engine::Test
