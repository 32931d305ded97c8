#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/deafness.h"
#include "embedded-gui-engine/eventmatcher.h"
#include "embedded-gui-engine/pointerlist.h"

namespace Engine {

class Hook;
class Observer;
class ReactionQueue;
class Timer;
class Widget;
struct Reaction;

/// What a page or container listens for. All arrays are constant data of the model and may hold null entries; a widget
/// array is either empty or parallel to its neighbour and names the widget whose area a touch must hit.
struct ReactableParams {
    std::span<Reaction* const> reactions = {};
    std::span<Widget* const> reactionWidgets = {};
    std::span<Timer* const> timers = {};
    std::span<Widget* const> timerWidgets = {};
    std::span<Hook* const> hooks = {};
    std::span<Widget* const> hookWidgets = {};
    /// Storage for observers that wait for the page's entering; one place for each that may wait is enough, since an
    /// observer is never stored twice.
    std::span<Observer*> observerStorage = {};
};

/// Something that events are offered to.
class Reactable {
  public:
    virtual bool isPage() const { return false; }
    virtual bool isBehaviorContainer() const { return false; }
    /// Called after each event that was scanned to its end. Answers whether something came of it.
    virtual bool afterDispatch(EventId eventId);

    /// Scans reactions, timers and hooks, last declared first. Reactions are only queued; hooks fire inside the scan.
    /// A touch event (start, end, touched) goes to the first one whose widget holds the gesture's start point and ends
    /// there; any other goes to all that match. Answers whether something matched.
    bool react(EventId eventId, ReactionQueue& queue);
    void tick(int elapsedMs);

    /// Remembers an observer until the owner's page is entered; one that waits already is not stored twice. False when
    /// the storage is full: then the caller must do its work at once.
    bool queueObserver(Observer* observer);
    /// Updates the waiting observers and forgets them.
    void refreshObservers();
    const PointerList<Observer>& waitingObservers() const { return observers_; }

    std::span<Reaction* const> reactions() const { return {reactions_, static_cast<std::size_t>(reactionCount_)}; }
    std::span<Timer* const> timers() const { return {timers_, static_cast<std::size_t>(timerCount_)}; }

  protected:
    constexpr explicit Reactable(const ReactableParams& params)
        : reactions_(params.reactions.data()),
          reactionWidgets_(params.reactionWidgets.data()),
          timers_(params.timers.data()),
          timerWidgets_(params.timerWidgets.data()),
          hooks_(params.hooks.data()),
          hookWidgets_(params.hookWidgets.data()),
          observers_(params.observerStorage),
          reactionCount_(static_cast<std::int16_t>(params.reactions.size())),
          timerCount_(static_cast<std::int16_t>(params.timers.size())),
          hookCount_(static_cast<std::int16_t>(params.hooks.size())) {}
    ~Reactable() = default;

  private:
    struct Pass;

    void offerToReaction(Pass& pass, int index);
    void offerToTimer(Pass& pass, int index);
    void offerToHook(Pass& pass, int index);

    Reaction* const* reactions_;
    Widget* const* reactionWidgets_;  ///< null as a whole when nothing is hit-tested
    Timer* const* timers_;
    Widget* const* timerWidgets_;
    Hook* const* hooks_;
    Widget* const* hookWidgets_;
    PointerList<Observer> observers_;
    std::int16_t reactionCount_;
    std::int16_t timerCount_;
    std::int16_t hookCount_;
    Deafness deafness_;
};

}  // namespace Engine
