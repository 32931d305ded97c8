#pragma once

#include "embedded-gui-engine/eventmatcher.h"
#include "embedded-gui-engine/rect.h"

namespace Engine {

class Page;
class ReactionQueue;
class Widget;
struct TouchEvent;

/// The manager's view of a widget that shows other pages inside the active one (the overlapping menu): events and
/// touches are offered to the pages that it holds open before the active page is asked.
class PageStrip {
  public:
    /// The page that the strip lies on; null while unlinked.
    virtual Page* ownerPage() const = 0;
    /// Offers the event to the open pages; true when one of them reacted.
    virtual bool routeEvent(EventId eventId, ReactionQueue& queue) = 0;
    /// The widget that took the record, or null.
    virtual Widget* routeTouch(const TouchEvent& event) = 0;
    virtual bool hasDirtyArea() const = 0;
    virtual Rect dirtyArea() const = 0;
    /// The strip's page was entered.
    virtual void resetStrip() = 0;

  protected:
    constexpr PageStrip() = default;
    ~PageStrip() = default;
};

}  // namespace Engine
