#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/pagestrip.h"
#include "embedded-gui-engine/pointerlist.h"
#include "embedded-gui-engine/variablebase.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

/// A strip of pages that slide over each other at the right of the page that holds it. Of each open page a tab stays
/// visible. One page takes events at a time: at depth 0 the holding page itself, else the open page of that number,
/// counted from 1.
class OverlappingMenu : public Widget, public PageStrip {
  public:
    /// `storage` has room for three times as many pages as may be open and is not owned, as the variable that mirrors
    /// the depth, which may be null. `duration` of a transition in milliseconds, `tabWidth` in pixels.
    constexpr explicit OverlappingMenu(const WidgetParams& params, std::span<Page*> storage, std::uint32_t duration,
                                       std::int32_t tabWidth, VariableBase<int>* depthVariable = nullptr,
                                       std::span<Object* const> children = {})
        : Widget(params, children),
          opened_(storage.first(storage.size() / 3)),
          opening_(storage.subspan(storage.size() / 3, storage.size() / 3)),
          closing_(storage.subspan(storage.size() / 3 * 2, storage.size() / 3)),
          duration_(duration),
          tabWidth_(tabWidth),
          depthVariable_(depthVariable) {}

    /// Makes one page active and all others not.
    void setDepth(std::uint32_t depth);
    std::uint32_t depth() const { return depth_; }
    /// Slides the page in over the others; while the holding page itself is active, the page replaces them at once.
    /// Refused with a log line when there is no room.
    void open(Page* page);
    void openAlone(Page* page);
    void closeTop();
    /// All but the first. An empty strip then holds a place without a page.
    void closeAll();

    const PointerList<Page>& opened() const { return opened_; }
    const PointerList<Page>& opening() const { return opening_; }
    const PointerList<Page>& closing() const { return closing_; }

    Page* ownerPage() const override { return page(); }
    bool routeEvent(EventId eventId, ReactionQueue& queue) override;
    Widget* routeTouch(const TouchEvent& event) override;
    bool hasDirtyArea() const override;
    Rect dirtyArea() const override;
    void resetStrip() override { setDepth(depth_); }

    const char* objectName() const override { return nameOr("OverlappingMenu"); }
    /// Also makes the menu the manager's page strip.
    void setParent(Object* parent) override;
    void onPageState(PagePhase phase) override;
    void draw(Painter& painter, Rect rect) override;

  private:
    class Strip;

    void setActive(Page* page, bool active);
    bool isOwnerActive() const;
    void leaveOpened();
    void closeFrom(int index);
    void startTransition(std::uint32_t time);
    void settle();
    void repaint(const Page& page);
    Rect areaOf(const Page& page) const;
    int tabAt(const TouchEvent& event) const;
    bool closesTabs(int tab);
    Widget* offerToPages(const TouchEvent& event);

    PointerList<Page> opened_;   ///< the rightmost last
    PointerList<Page> opening_;  ///< being brought in
    PointerList<Page> closing_;  ///< being taken out
    std::uint32_t duration_;
    std::int32_t tabWidth_;
    std::uint32_t depth_ = 0;
    VariableBase<int>* depthVariable_;
    std::uint32_t startTime_ = 0;  ///< of the transition, milliseconds; 0 for none
};

}  // namespace Engine
