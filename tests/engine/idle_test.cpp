// While events are handled and while nothing happens, the heap is left alone.

#include "embedded-gui-engine/navigateto.h"
#include "embedded-gui-engine/timer.h"
#include "tests/support/allocations.h"
#include "world.h"

namespace Engine::Test {
namespace {

class Idle : public World {};

TEST_F(Idle, NeitherEventsNorNavigationNorFramesAllocate) {
    Box box({.width = 5, .height = 5});
    Page home({.inHistory = true, .children = list<Object>({&box})}), menu({.inHistory = true});
    NavigateTo toMenu(&menu), toHome(&home);
    const auto go = list<Action>({&toMenu}), back = list<Action>({&toHome});
    Reaction there(go, on(200)), here(back, on(201));
    Timer timer({.interval = 10, .repeat = -1, .startMatcher = on(200)});
    BehaviorContainer keys({.reactions = list<Reaction>({&there, &here}), .timers = list<Timer>({&timer})});
    const auto containers = list<BehaviorContainer>({&keys});
    Screen screen(20, 20);
    home.linkChildren();
    manager.setPainter(&screen.painter);
    manager.setContainers(containers);
    manager.setActivePage(&home);
    manager.drawFrame();
    manager.finishFrame();

    hooks().log = nullptr;  // the fixture's own would allocate
    const std::size_t before = allocations;
    for (int i = 0; i < 200; ++i) {
        for (int k = 0; k < 3; ++k) manager.postEvent(static_cast<EventId>(200 + (i + k) % 2));
        down(1, 1);
        up(3, 3);
        passMillis(16);
        cycle();
        box.setForeground(static_cast<Color>(i));
        manager.drawFrame();
    }
    EXPECT_EQ(allocations, before);
    EXPECT_GT(manager.history().size(), 20u);
}

}  // namespace
}  // namespace Engine::Test
