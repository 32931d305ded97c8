// One array of each class that a model declares, as a model would write it. Not run: its object file is looked at.
#include "embedded-gui-engine/actiongroup.h"
#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/callbackobserver.h"
#include "embedded-gui-engine/eventtrigger.h"
#include "embedded-gui-engine/fireevent.h"
#include "embedded-gui-engine/group.h"
#include "embedded-gui-engine/groupeventmatcher.h"
#include "embedded-gui-engine/historyclear.h"
#include "embedded-gui-engine/historygoback.h"
#include "embedded-gui-engine/navigateto.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/pagenavigator.h"
#include "embedded-gui-engine/reaction.h"
#include "embedded-gui-engine/singleeventmatcher.h"
#include "embedded-gui-engine/timer.h"
#include "embedded-gui-engine/useraction.h"
#include "embedded-gui-engine/userbutton.h"

namespace ModelObjects {

using namespace Engine;

extern Page modelPages[2];
extern Group modelGroups[3];

constinit NavigateTo modelNavigateTo[] = {NavigateTo(&modelPages[1]), NavigateTo(nullptr, "nowhere")};
constinit HistoryGoBack modelGoBack[] = {HistoryGoBack(), HistoryGoBack("back")};
constinit HistoryClear modelClear[] = {HistoryClear(), HistoryClear("forget")};
constinit Action* const modelActions[] = {&modelNavigateTo[0], nullptr, &modelGoBack[0], &modelClear[1]};
constinit ActionGroup modelActionGroups[] = {
    ActionGroup(modelActions), ActionGroup(modelActions, "first", Action::Enabled | Action::StopAfterFirst)};

constinit SingleEventMatcher modelMatchers[] = {SingleEventMatcher(128), SingleEventMatcher(129)};
constexpr EventId modelEventIds[] = {130, 131};
constinit GroupEventMatcher modelGroupMatchers[] = {GroupEventMatcher(modelEventIds), GroupEventMatcher({})};

constinit Reaction modelReactions[] = {{modelActions, &modelMatchers[0]},
                                       {modelActions, &modelGroupMatchers[0], &modelGroups[0], "_id", false}};
constinit Reaction* const modelReactionList[] = {&modelReactions[0], &modelReactions[1]};
constinit Widget* const modelReactionWidgets[] = {nullptr, &modelGroups[0]};
constinit Timer modelTimers[] = {Timer({.interval = 500, .repeat = -1, .startMatcher = &modelMatchers[0]}),
                                 Timer({.interval = 150, .finishActions = modelActions, .name = "late"})};
constinit Timer* const modelTimerList[] = {&modelTimers[0], &modelTimers[1]};

constinit CallbackObserver modelCallbacks[] = {CallbackObserver(nullptr), CallbackObserver()};
constinit EventTrigger modelTriggers[] = {EventTrigger(nullptr, 130),
                                          EventTrigger(nullptr, 131, EventTrigger::Fire::OnEveryTrueUpdate)};

constinit Object* const modelChildren[] = {&modelGroups[1], nullptr};
constinit Group modelGroups[3] = {Group({.width = 240, .height = 20, .name = "bar"}, Layout::Row, modelChildren),
                                  Group({.x = 4, .highlightForeground = 0xFFFFFFFF}),
                                  Group({}, Layout::Fixed, {}, Group::Reacts::WhenHighlighted, &modelGroups[1])};

constinit const PageNavigator::Link modelLinks[] = {{&modelPages[0], &modelPages[1], PageNavigator::Mode::Moves,
                                                     PageNavigator::Mode::Moves, PageNavigator::Direction::EastOf}};
constinit const PageNavigator::Link* const modelLinkList[] = {&modelLinks[0]};
constinit PageNavigator modelNavigators[] = {PageNavigator({.width = 240, .height = 400}, modelLinkList, 300),
                                             PageNavigator({}, {}, 0)};

constinit Object* const modelTops[] = {&modelGroups[0], &modelNavigators[0]};
Observer* modelObserverStorage[4];
constinit Page modelPages[2] = {Page({.name = "Home",
                                      .inHistory = true,
                                      .children = modelTops,
                                      .behavior = {.reactions = modelReactionList,
                                                   .reactionWidgets = modelReactionWidgets,
                                                   .timers = modelTimerList,
                                                   .observerStorage = modelObserverStorage}}),
                                Page({})};

constinit UserAction modelUserActions[] = {UserAction({.pressActions = modelActions}), UserAction({})};
constinit UserAction* const modelUserActionList[] = {&modelUserActions[0], nullptr};
constinit UserButton modelUserButtons[] = {UserButton({.pressMatcher = &modelMatchers[1]}), UserButton({})};
constinit UserButton* const modelUserButtonList[] = {&modelUserButtons[0]};
constinit BehaviorContainer modelContainers[] = {
    BehaviorContainer({.reactions = modelReactionList}, modelUserActionList, modelUserButtonList, "keys"),
    BehaviorContainer({})};

}  // namespace ModelObjects
