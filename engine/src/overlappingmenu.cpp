#include "embedded-gui-engine/overlappingmenu.h"

#include <algorithm>

#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/setvariablechecked.h"
#include "scaletruncate.h"

namespace Engine {

void OverlappingMenu::setParent(Object* parent) {
    Widget::setParent(parent);
    GuiManager::instance().setPageStrip(this);
}

// Depth.

void OverlappingMenu::setDepth(std::uint32_t depth) {
    depth_ = depth;
    if (depthVariable_ != nullptr) setVariableChecked(*depthVariable_, static_cast<int>(depth));
    Page* const owner = page();
    const bool inFront = owner != nullptr && GuiManager::instance().activePage() == owner;
    setActive(owner, depth == 0 && inFront);
    const auto isTop = [&](int index) { return inFront && depth == static_cast<std::uint32_t>(index) + 1; };
    for (int i = 0; i < opened_.size(); ++i) setActive(opened_[i], isTop(i));
    for (int i = 0; i < opening_.size(); ++i) setActive(opening_[i], isTop(opened_.size() + i));
    // A page that is taken out and brought in again at once stays.
    for (Page* page : closing_)
        if (!opened_.contains(page) && !opening_.contains(page)) setActive(page, false);
}

void OverlappingMenu::setActive(Page* page, bool active) {
    if (page == nullptr || page->isActive() == active) return;
    if (active)
        GuiManager::instance().enterPage(*page);
    else
        GuiManager::instance().leavePage(*page);
}

bool OverlappingMenu::isOwnerActive() const {
    const Page* owner = page();
    return owner != nullptr && owner->isActive();
}

void OverlappingMenu::leaveOpened() {
    for (Page* page : opened_) setActive(page, false);
}

void OverlappingMenu::onPageState(PagePhase phase) {
    if (phase == PagePhase::Entering)
        setDepth(depth_);
    else
        leaveOpened();
    Widget::onPageState(phase);
}

// Moving.

/// Time 0 would say that no transition runs.
void OverlappingMenu::startTransition(std::uint32_t time) {
    startTime_ = time != 0 ? time : UINT32_MAX;
    invalidateAll(false);
}

void OverlappingMenu::open(Page* page) {
    if (isOwnerActive()) {
        openAlone(page);
        setDepth(static_cast<std::uint32_t>(opened_.size()));
        return;
    }
    if (opened_.size() + opening_.size() >= opened_.capacity()) {
        engineLog(1, __FILE_NAME__, __LINE__, "%s has room for %i pages only, %s is not opened.", objectName(),
                  opened_.capacity(), page != nullptr ? page->objectName() : "NULL");
        return;
    }
    opening_.add(page);
    setDepth(static_cast<std::uint32_t>(opened_.size() + opening_.size()));
    startTransition(GuiManager::nowMillis());
}

void OverlappingMenu::openAlone(Page* page) {
    if (opened_.size() == 1 && opened_[0] == page) return;
    leaveOpened();
    opened_.clear();
    if (opening_.size() == opening_.capacity()) settle();
    opening_.add(page);
    startTransition(GuiManager::nowMillis() - duration_);
    setDepth(0);
}

void OverlappingMenu::closeTop() {
    if (opened_.isEmpty()) return;
    if (opened_.size() >= 2) closeFrom(opened_.size() - 1);
    setDepth(static_cast<std::uint32_t>(opened_.size()));
    startTransition(GuiManager::nowMillis());
}

void OverlappingMenu::closeAll() {
    if (opened_.isEmpty())
        opened_.add(nullptr);
    else
        closeFrom(1);
    setDepth(0);
    startTransition(GuiManager::nowMillis());
}

/// A page for which there is no room among the closing ones goes without a transition.
void OverlappingMenu::closeFrom(int index) {
    for (int i = index; i < opened_.size(); ++i)
        if (!closing_.add(opened_[i])) setActive(opened_[i], false);
    opened_.truncate(index);
}

void OverlappingMenu::settle() {
    for (Page* page : opening_)
        if (!opened_.add(page)) setActive(page, false);
    opening_.clear();
    closing_.clear();
}

// Events and touches.

bool OverlappingMenu::routeEvent(EventId eventId, ReactionQueue& queue) {
    for (int i = opened_.size() - 1; i >= 0; --i) {
        Page* page = opened_[i];
        if (page == nullptr || !page->isActive() || !page->react(eventId, queue)) continue;
        repaint(*page);
        return true;
    }
    return false;
}

Widget* OverlappingMenu::routeTouch(const TouchEvent& event) {
    if (event.phase == TouchEvent::Phase::Up && closesTabs(tabAt(event))) return this;
    return offerToPages(event);
}

/// The number of the strip below the touch, counted from the left edge, at which the holding page shows.
int OverlappingMenu::tabAt(const TouchEvent& event) const {
    const int count = opened_.size();
    const int edge = width_ - tabWidth_;
    const int tab = count >= 2 ? edge / count : edge;
    if (tab <= 0) return 0;
    return std::clamp(toLocal({event.x, event.y}).x / tab, 0, count);
}

/// A tap on a tab uncovers its page; answers whether that took the touch.
bool OverlappingMenu::closesTabs(int tab) {
    if (opened_.size() == 1) {
        if (tab == 0 && !isOwnerActive()) setDepth(0);
        if (tab == 1 && opened_[0] != nullptr && !opened_[0]->isActive()) setDepth(1);
        return false;
    }
    if (opened_.size() < 2 || tab >= opened_.size()) return false;
    closeFrom(std::max(tab, 1));
    setDepth(static_cast<std::uint32_t>(tab));
    startTransition(GuiManager::nowMillis());
    invalidateAll(true);
    return true;
}

Widget* OverlappingMenu::offerToPages(const TouchEvent& event) {
    for (int i = opened_.size() - 1; i >= 0; --i) {
        Page* page = opened_[i];
        if (page == nullptr || !page->isActive()) continue;
        Widget* taker = GuiManager::offerTouch(*page, event);
        if (taker == nullptr) continue;
        repaint(*page);
        return taker;
    }
    return nullptr;
}

// Dirty areas.

/// A page that is dirty as a whole stands for the menu's area: it shows nowhere else.
Rect OverlappingMenu::areaOf(const Page& page) const {
    const Rect dirty = page.dirty();
    const bool whole = dirty.width == Page::WholeScreen || dirty.height == Page::WholeScreen;
    return whole ? absoluteRect() : dirty;
}

void OverlappingMenu::repaint(const Page& page) {
    Page* owner = this->page();
    if (owner != nullptr && page.isDirty()) owner->addDirty(areaOf(page));
}

/// Hidden, the menu does not draw its pages, and they stay dirty.
bool OverlappingMenu::hasDirtyArea() const {
    return isEnabledInTree() && std::any_of(opened_.begin(), opened_.end(),
                                            [](const Page* page) { return page != nullptr && page->isDirty(); });
}

Rect OverlappingMenu::dirtyArea() const {
    Rect area;
    for (const Page* page : opened_)
        if (page != nullptr && page->isDirty()) area = uniteRect(area, areaOf(*page));
    return area;
}

// Drawing.

/// Where the pages lie in one frame of a transition.
class OverlappingMenu::Strip {
  public:
    Strip(const OverlappingMenu& menu, Painter& painter, Rect rect)
        : menu_(menu), painter_(painter), rect_(rect), space_(rect.width - menu.tabWidth_) {
        if (menu.startTime_ != 0) elapsed_ = std::min(GuiManager::nowMillis() - menu.startTime_, menu.duration_);
        const auto duration = static_cast<float>(menu.duration_);
        // Each page's share of the room: an open one counts in full.
        const float total = static_cast<float>(remaining()) * static_cast<float>(menu.closing_.size()) +
                            static_cast<float>(elapsed_) * static_cast<float>(menu.opening_.size()) +
                            duration * static_cast<float>(menu.opened_.size());
        step_ = total == 0 ? space_ : truncated(duration * static_cast<float>(space_) / total);
    }

    bool isOver() const { return elapsed_ >= menu_.duration_; }

    void draw() {
        drawOpened();
        drawMoving(menu_.opening_, remaining());
        drawMoving(menu_.closing_, elapsed_);
    }

  private:
    std::uint32_t remaining() const { return menu_.duration_ - elapsed_; }
    std::int64_t rightEdge() const { return std::int64_t{rect_.x} + rect_.width; }

    void drawOpened() {
        std::int64_t x = std::int64_t{rect_.x} + step_;
        const int last = menu_.opened_.size() - 1;
        for (int i = 0; i <= last; ++i, x += step_) drawPage(menu_.opened_[i], x, i < last ? step_ : rightEdge() - x);
    }

    /// `way` is the part of the transition, in milliseconds, that the pages are away from their place.
    void drawMoving(const PointerList<Page>& pages, std::uint32_t way) {
        const std::int64_t outside =
            menu_.duration_ != 0 ? std::int64_t{way} * menu_.tabWidth_ / menu_.duration_ : std::int64_t{0};
        std::int64_t x = rect_.x + space_ + outside;
        for (Page* page : pages) {
            drawPage(page, x, rightEdge() - x);
            x += step_;
        }
    }

    void drawPage(Page* page, std::int64_t x, std::int64_t width) {
        if (page == nullptr) return;
        page->setOrigin(toCoordinate(x), static_cast<std::int16_t>(page->origin().y));
        const std::int64_t shown = std::max<std::int64_t>(width, 0);
        painter_.pushClip({toCoordinate(x), rect_.y, toCoordinate(shown), rect_.height}, false);
        page->draw(painter_);
        painter_.popClip();
    }

    const OverlappingMenu& menu_;
    Painter& painter_;
    Rect rect_;
    std::int32_t space_;
    std::uint32_t elapsed_ = 0;
    std::int32_t step_ = 0;
};

void OverlappingMenu::draw(Painter& painter, Rect rect) {
    for (Object* child : children())
        if (Widget* widget = asWidget(child); widget != nullptr && widget->hasFlag(FlagEnabled)) widget->paint(painter);
    if (opened_.isEmpty() && opening_.isEmpty() && closing_.isEmpty()) return;
    Strip strip(*this, painter, rect);
    strip.draw();
    if (!opening_.isEmpty() || !closing_.isEmpty()) invalidateAll(true);
    if (strip.isOver()) settle();
}

}  // namespace Engine
