#include "embedded-gui-engine/reactable.h"

#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hook.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/reactionee.h"
#include "embedded-gui-engine/reactionqueue.h"
#include "embedded-gui-engine/systemevents.h"
#include "embedded-gui-engine/timer.h"
#include "embedded-gui-engine/trace.h"
#include "embedded-gui-engine/widget.h"
#include "matchreport.h"

namespace Engine {
namespace {

bool isTouchEvent(EventId eventId) {
    return eventId >= Event_TouchStart && eventId <= Event_TouchTouched;
}

const Widget* widgetAt(Widget* const* widgets, int index) {
    return widgets != nullptr ? widgets[index] : nullptr;
}

bool isOwnerEnabled(const Reaction& reaction) {
    return reaction.owner == nullptr || reaction.owner->isEnabled();
}

}  // namespace

/// One event on its way through one reactable.
struct Reactable::Pass {
    EventId eventId;
    ReactionQueue& queue;
    MatchReport report;
    bool touch;
    Point hitPoint;      ///< of touch events: where the gesture began
    bool heard = false;  ///< a matcher matched, whether something came of it or not
    bool matched = false;
    bool ended = false;  ///< a touch event found its target

    Pass(const Reactable& reactable, EventId event, ReactionQueue& reactions)
        : eventId(event), queue(reactions), report(reactable, event), touch(isTouchEvent(event)) {
        if (touch) hitPoint = GuiManager::instance().gesture().start;
    }
    /// No widget counts as a hit.
    bool hits(const Widget* widget) const { return !touch || widget == nullptr || widget->holds(hitPoint); }
    void match() {
        matched = true;
        ended = touch;
    }
};

bool Reactable::react(EventId eventId, ReactionQueue& queue) {
    if (deafness_.isDeafTo(eventId)) return afterDispatch(eventId);
    Pass pass(*this, eventId, queue);
    for (int i = reactionCount_ - 1; i >= 0 && !pass.ended; --i) offerToReaction(pass, i);
    for (int i = timerCount_ - 1; i >= 0 && !pass.ended; --i) offerToTimer(pass, i);
    for (int i = hookCount_ - 1; i >= 0 && !pass.ended; --i) offerToHook(pass, i);
    if (pass.ended) return true;
    if (!pass.heard) deafness_.learn(eventId);
    return afterDispatch(eventId) || pass.matched;
}

void Reactable::offerToReaction(Pass& pass, int index) {
    const Reaction* reaction = reactions_[index];
    if (reaction == nullptr || reaction->matcher == nullptr || !reaction->matcher->matches(pass.eventId)) return;
    pass.heard = true;
    const Widget* widget = widgetAt(reactionWidgets_, index);
    if (pass.report.isOn()) pass.report.add(*reaction, widget, isOwnerEnabled(*reaction));
    if (!reaction->enabled || !isOwnerEnabled(*reaction) || !pass.hits(widget)) return;
    Trace::instance().reaction("push", *reaction);
    if (!pass.queue.push(reaction))
        Trace::instance().dropped("Reaction", reaction->name != nullptr ? reaction->name : "Reaction",
                                  pass.queue.dropped());
    pass.match();
}

void Reactable::offerToTimer(Pass& pass, int index) {
    Timer* timer = timers_[index];
    if (timer == nullptr) return;
    const bool starts = timer->isStartedBy(pass.eventId);
    if (!starts && !timer->isStoppedBy(pass.eventId)) return;
    pass.heard = true;
    if (!timer->isEnabled() || !pass.hits(widgetAt(timerWidgets_, index))) return;
    if (starts)
        timer->start();
    else
        timer->stop();
    pass.match();
}

void Reactable::offerToHook(Pass& pass, int index) {
    Hook* hook = hooks_[index];
    if (hook == nullptr || !hook->isFiredBy(pass.eventId)) return;
    pass.heard = true;
    if (!pass.hits(widgetAt(hookWidgets_, index))) return;
    hook->fire();
    pass.match();
}

void Reactable::tick(int elapsedMs) {
    for (Timer* timer : timers())
        if (timer != nullptr && timer->isEnabled()) timer->advance(elapsedMs);
    for (int i = 0; i < hookCount_; ++i)
        if (hooks_[i] != nullptr && hooks_[i]->isRunning()) hooks_[i]->addElapsed(elapsedMs);
}

bool Reactable::afterDispatch(EventId) {
    return false;
}

bool Reactable::queueObserver(Observer* observer) {
    if (observer == nullptr || observers_.contains(observer) || observers_.add(observer)) return true;
    engineLog(0, __FILE_NAME__, __LINE__, "No room for an observer to wait for its page: the model reserved %i places.",
              observers_.capacity());
    return false;
}

void Reactable::refreshObservers() {
    // By index: an update may queue further ones, which then take their turn here.
    for (int i = 0; i < observers_.size(); ++i) observers_[i]->update();
    observers_.clear();
}

}  // namespace Engine
