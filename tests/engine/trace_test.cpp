// The lines of the trace and the names of events.
#include "embedded-gui-engine/border.h"
#include "world.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace Engine::Test {
namespace {

constexpr EventId Key = 200;

class Traces : public World {
  protected:
    Journal lines() { return std::exchange(logLines, {}); }
    Trace& trace = Trace::instance();
};

TEST_F(Traces, EventNames) {
    EXPECT_STREQ(trace.eventName(Event_SwipeDown), "Event_SwipeDown");
    EXPECT_STREQ(trace.eventName(15), "UnknownSystemEvent");
    EXPECT_STREQ(trace.eventName(Key), "UnknownUserEvent");
    static constexpr const char* names[] = {"Event_First", "Event_Second"};
    trace.setUserEvents(names);
    EXPECT_STREQ(trace.eventName(129), "Event_Second");
    EXPECT_STREQ(trace.eventName(130), "UnknownUserEvent");
}

TEST_F(Traces, OneEventFromPostToDone) {
    Box owner({.name = "owner"});
    Page page({.name = "Home", .behavior = {.reactions = list<Reaction>({says(Key, "beep", &owner)})}});
    manager.setActivePage(&page);
    EXPECT_THAT(lines(), IsEmpty());
    traceFlags = {.draw = 0, .event = 0x7f, .var = 0, .page = 0};
    send(Key);
    EXPECT_THAT(lines(),
                ElementsAre("4 EVENT(post) 'UnknownUserEvent' (200)", "4 EVENT(start) 'UnknownUserEvent' (200)",
                            "4 EVENT(Home) 'UnknownUserEvent' (200)", "4 REACTION(push) 'beep' attached to owner)",
                            "4 REACTION(execute) 'beep' attached to owner)", "4 ACTION(execute) 'beep')",
                            "4 EVENT(done) 'UnknownUserEvent' (200)"));
    traceFlags.event = Trace::EventReaction;
    runReaction(Reaction({}, nullptr));
    EXPECT_THAT(lines(), ElementsAre("4 REACTION(execute) 'Reaction' attached to nullptr)"));
    traceFlags.event = Trace::EventDispatch;
    down(7, 8);
    EXPECT_THAT(lines(), ElementsAre("4 EVENT(TOUCH) 'Home' (7x8)"));
}

TEST_F(Traces, PagesAndModals) {
    Page home({.name = "Home"}), nameless({}), modal({.name = "Ask", .modal = true});
    traceFlags.page = Trace::PageEnter | Trace::PageLeave;
    manager.setActivePage(&home);
    manager.setActivePage(&nameless);
    trace.pageEntered(nullptr);
    EXPECT_THAT(lines(), ElementsAre("4 PAGE(enter) 'Home'", "4 PAGE(leave) 'Home'", "4 PAGE(enter) 'Page'",
                                     "4 PAGE(enter) 'ZERO'"));
    traceFlags = {};
    const auto overlays = list<Page>({&modal});
    manager.setOverlays(overlays);
    traceFlags.event = Trace::EventDispatch;
    manager.postEvent(Key);
    cycle();
    EXPECT_THAT(lines(), testing::Contains("4 EVENT 'UnknownUserEvent' (200) will be sent to modal page Ask only"));
}

TEST_F(Traces, FocusAndValues) {
    Page page({.name = "Form"});
    Field field({.name = "field"});
    field.setParent(&page);
    traceFlags = {.draw = 0, .event = Trace::EventFocus, .var = 0xff, .page = 0};
    page.addFocus(&field);
    page.clearAllFocus();
    EXPECT_THAT(lines(), ElementsAre("4 FOCUS(  SET) 'Form'/'field'", "4 FOCUS(CLEAR) 'Form'/'field'"));
    trace.varToValue("v", true);
    trace.varToValueBy("v", 1.5f, "set");
    trace.varToVariable("v", "w", "text");
    trace.varToValue<const char*>(nullptr, nullptr);
    trace.list("select", 3);
    trace.edit("v", "commit(%i)", 4);
    EXPECT_THAT(lines(), ElementsAre("4 VAR(toVal) 'v' = true", "4 VAR(toVal) 'v' = 1.500 by Action set",
                                     "4 VAR(toVar) 'v' = 'w' (text)", "4 VAR(toVal) '' = ", "4 LIST(select) @ 3",
                                     "4 EDIT(v) commit(4)"));
}

TEST_F(Traces, DrawingAppearsAsATreeOfAtMostSevenLevels) {
    Box box({.x = 1, .y = 2, .width = 3, .height = 4, .name = "box"});
    Page page({.name = "Home", .backgroundColor = 0xFF112233, .children = list<Object>({&box})});
    Screen screen(6, 5);
    page.linkChildren();
    manager.setPainter(&screen.painter);
    manager.setActivePage(&page);
    traceFlags.draw = 0x80000005;
    manager.drawFrame();
    passMillis(2000);
    traceFlags.draw = 0x80000000;
    manager.drawFrame();
    EXPECT_THAT(
        lines(),
        ElementsAre("4 DRAW>1@1000", "4 DRAW>Home(0|0,6|5)(C00000000|ff112233,D00000000|00000000,S00000000|00000000)",
                    "4  DRAW>box(1|2,3|4)(ffffffff|ff000000,ff808080|ff000000,ff000000|ffffffff)", "4  DRAW<box",
                    "4 DRAW<Home", "4 DRAW<1, 0(0|0|0)", "4 DRAW>2@3000", "4 DRAW<2, 0(0|0|0)"));
    traceFlags.draw = Trace::DrawWidget;
    for (int i = 0; i < 9; ++i) trace.beginWidget(box, {});
    EXPECT_THAT(logLines.back(), testing::StartsWith("4        DRAW>box")) << "seven blanks after the level's one";
    for (int i = 0; i < 9; ++i) trace.endWidget(box);
    EXPECT_EQ(logLines.back(), "4 DRAW<box");
}

TEST_F(Traces, TheMatchReportSaysWhoRefused) {
    Field inside({.name = "inside"});
    Group bar({.name = "bar"}, Layout::Fixed, list<Object>({&inside}));
    Reaction* off = says(Key, "off");
    off->setEnabled(false);
    Page page({.name = "Home",
               .children = list<Object>({&bar}),
               .behavior = {.reactions = list<Reaction>({says(Key, "owned", &inside), off, says(201, "other")})}});
    page.linkChildren();
    bar.linkChildren();
    bar.setDisabled(true);
    manager.setActivePage(&page);
    traceFlags.event = Trace::EventMatch;
    send(Key);
    send(202);
    const std::string bars = "                           bar", insides = "                        inside";
    EXPECT_THAT(lines(), ElementsAre("2 UnknownUserEvent on page Home",
                                     "2   \u2717                            off matches and is !valid and  reactive",
                                     "2   \u2717 " + insides + " matches and is  valid and !reactive, parent " +
                                         insides + ":  v  d  fa !f, parent " + bars + ":  v  d !fa !f"));
    EXPECT_THAT(said(), IsEmpty());
}

}  // namespace
}  // namespace Engine::Test
