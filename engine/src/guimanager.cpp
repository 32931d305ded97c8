#include "embedded-gui-engine/guimanager.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/pagelistener.h"
#include "embedded-gui-engine/pagestrip.h"
#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/setvariablechecked.h"
#include "embedded-gui-engine/stringvariable.h"
#include "embedded-gui-engine/systemevents.h"
#include "embedded-gui-engine/trace.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {
namespace {

constinit GuiManager* chosenInstance = nullptr;

constexpr int TapDistanceSquared = 99;      ///< pixels
constexpr std::uint32_t SwipeMillis = 500;  ///< a gesture that takes as long or longer is a drag
constexpr int LongestPath = 1 << 24;        ///< where the sum of a gesture's steps stops

int addedPath(int path, int step) {
    return static_cast<int>(std::min<std::int64_t>(path + std::abs(std::int64_t{step}), LongestPath));
}

}  // namespace

GuiManager::GuiManager() : GuiManager(Limits{}) {}

GuiManager::GuiManager(Limits limits)
    : historyLimit_(limits.history),
      eventQueue_(limits.events),
      reactionQueue_(limits.reactions),
      lastTick_(nowMillis()) {
    // The push that finds the limit exceeded cuts before it adds, so one more than the limit is the most.
    history_.reserve(static_cast<std::size_t>(historyLimit_) + 2);
}

GuiManager::~GuiManager() = default;

GuiManager& GuiManager::instance() {
    if (chosenInstance != nullptr) return *chosenInstance;
    static GuiManager own;
    return own;
}

GuiManager* GuiManager::setInstance(GuiManager* manager) {
    return std::exchange(chosenInstance, manager);
}

void GuiManager::setOverlays(std::span<Page* const> overlays) {
    overlays_ = overlays;
    for (Page* page : overlays_)
        if (page != nullptr) enterPage(*page);
}

void GuiManager::linkModel() {
    if (modelHooks_.linkModel != nullptr) modelHooks_.linkModel();
}

void GuiManager::finishInitialization() {
    linkModel();
    initializing_ = false;
}

void GuiManager::update(std::intptr_t, std::intptr_t) {
    if (scaleCallback_ == nullptr) return;
    scaleCallback_(scaleXProvider_ != nullptr ? scaleXProvider_->value() : 1.0f,
                   scaleYProvider_ != nullptr ? scaleYProvider_->value() : 1.0f);
}

void GuiManager::setScale(ValueProvider<float>* x, ValueProvider<float>* y, ScaleCallback callback) {
    scaleXProvider_ = x;
    scaleYProvider_ = y;
    scaleCallback_ = callback;
}

std::uint32_t GuiManager::nowMillis() {
    return static_cast<std::uint32_t>(steadyNanoseconds() / 1'000'000);
}

int GuiManager::elapsedMillis() {
    const std::uint32_t now = nowMillis();
    return static_cast<int>(now - std::exchange(lastTick_, now));
}

// Events.

bool GuiManager::postEvent(EventId eventId) {
    if (initializing_) return false;
    Trace::instance().eventPosted(eventId);
    if (eventQueue_.push(eventId)) return true;
    Trace::instance().dropped("Event", Trace::instance().eventName(eventId), eventQueue_.dropped());
    return false;
}

bool GuiManager::processEvents(bool) {
    if (modelHooks_.syncVariables != nullptr) modelHooks_.syncVariables();
    for (int handled = 1; eventQueue_.count() > 0; ++handled) {
        handleEvent(eventQueue_.pop());
        if (handled > EventBudget) dieOfTooManyEvents();
    }
    tick(elapsedMillis());
    if (overlappingMenu_ != nullptr && overlappingMenu_->hasDirtyArea())
        if (Page* page = overlappingMenu_->ownerPage()) page->addDirty(overlappingMenu_->dirtyArea());
    return needsDrawing();
}

void GuiManager::handleEvent(EventId eventId) {
    Trace::instance().event("start", eventId);
    dispatchEvent(eventId);
    runReactions();
    Trace::instance().event("done", eventId);
}

void GuiManager::runReactions() {
    while (reactionQueue_.count() > 0) runReaction(*reactionQueue_.pop());
}

void GuiManager::dieOfTooManyEvents() {
    engineLog(0, __FILE_NAME__, __LINE__,
              "More than 1000 events in one refresh cycle, something is wrong. Check the GUI design.");
    engineLog(0, __FILE_NAME__, __LINE__, "Active page is %s",
              activePage_ != nullptr ? activePage_->objectName() : "NULL");
    engineLog(0, __FILE_NAME__, __LINE__, "There are currently %u events in the queue:", eventQueue_.count());
    while (eventQueue_.count() > 0) engineLog(0, __FILE_NAME__, __LINE__, "Event %u", eventQueue_.pop());
    engineLog(0, __FILE_NAME__, __LINE__, "This is FATAL, EXITING");
    std::exit(EXIT_FAILURE);
}

void GuiManager::dispatchEvent(EventId eventId) {
    if (Page* modal = modalOverlay()) {
        Trace::instance().eventForModal(eventId, *modal);
        modal->react(eventId, reactionQueue_);
    } else {
        dispatchToPages(eventId);
    }
    for (BehaviorContainer* container : containers_)
        if (container != nullptr && container->isEnabled()) container->react(eventId, reactionQueue_);
}

void GuiManager::dispatchToPages(EventId eventId) {
    const bool menuReacted = stripBelongsToActivePage() && overlappingMenu_->routeEvent(eventId, reactionQueue_);
    if (!menuReacted && activePage_ != nullptr && activePage_->isActive()) offerEvent(*activePage_, eventId);
    for (Page* page : overlays_)
        if (page != nullptr && page->isShown()) offerEvent(*page, eventId);
}

void GuiManager::offerEvent(Page& page, EventId eventId) {
    Trace::instance().event(page.objectName(), eventId);
    page.react(eventId, reactionQueue_);
}

Page* GuiManager::modalOverlay() const {
    const auto isModal = [](const Page* page) { return page != nullptr && page->isModal() && page->isShown(); };
    const auto found = std::find_if(overlays_.rbegin(), overlays_.rend(), isModal);
    return found != overlays_.rend() ? *found : nullptr;
}

bool GuiManager::stripBelongsToActivePage() const {
    return overlappingMenu_ != nullptr && activePage_ != nullptr && overlappingMenu_->ownerPage() == activePage_;
}

void GuiManager::tick(int elapsedMs) {
    if (activePage_ != nullptr) activePage_->tick(elapsedMs);
    for (Page* page : overlays_)
        if (page != nullptr) page->tick(elapsedMs);
    for (BehaviorContainer* container : containers_) {
        if (container == nullptr) continue;
        container->tick(elapsedMs);
        container->tickUserButtons(elapsedMs);
    }
}

bool GuiManager::needsDrawing() const {
    if (activePage_ != nullptr && activePage_->isDirty()) return true;
    if (secondPage_ != nullptr) return true;
    return std::any_of(overlays_.begin(), overlays_.end(),
                       [](const Page* page) { return page != nullptr && page->isDirty(); });
}

// Touch.

bool GuiManager::handleTouch(const TouchEvent& event) {
    const bool firstFinger = event.finger == 0;
    if (firstFinger) trackGesture(event);
    if (touchGrabber_ == nullptr)
        touchGrabber_ = routeTouch(event);
    else if (!touchGrabber_->handleTouch(event))
        touchGrabber_ = nullptr;
    if (firstFinger && event.phase == TouchEvent::Phase::Up) {
        if (touchGrabber_ == nullptr) endGesture();
        touchGrabber_ = nullptr;
    }
    return true;
}

void GuiManager::trackGesture(const TouchEvent& event) {
    const Point point{event.x, event.y};
    switch (event.phase) {
        case TouchEvent::Phase::Down:
            gesture_ = {};
            gesture_.start = gesture_.last = point;
            gesture_.down = true;
            gesture_.downTime = nowMillis();
            postEvent(Event_TouchStart);
            break;
        case TouchEvent::Phase::Move:
            gesture_.delta = {point.x - gesture_.last.x, point.y - gesture_.last.y};
            gesture_.path = {addedPath(gesture_.path.x, gesture_.delta.x),
                             addedPath(gesture_.path.y, gesture_.delta.y)};
            gesture_.last = point;
            break;
        case TouchEvent::Phase::Up:
            gesture_.down = false;
            gesture_.last = point;
            break;
    }
}

Widget* GuiManager::routeTouch(const TouchEvent& event) {
    if (Page* modal = modalOverlay()) return offerTouch(*modal, event);
    if (stripBelongsToActivePage())
        if (Widget* taker = overlappingMenu_->routeTouch(event)) return taker;
    if (activePage_ != nullptr) {
        Trace::instance().touch(*activePage_, event.x, event.y);
        if (Widget* taker = offerTouch(*activePage_, event)) return taker;
    }
    for (Page* page : overlays_) {
        if (page == nullptr || !page->isShown()) continue;
        if (Widget* taker = offerTouch(*page, event)) return taker;
    }
    return nullptr;
}

Widget* GuiManager::offerTouch(Page& page, const TouchEvent& event) {
    for (Object* child : page.children()) {
        Widget* widget = asWidget(child);
        if (Widget* taker = widget != nullptr ? widget->hitTest(event) : nullptr) return taker;
    }
    return nullptr;
}

void GuiManager::endGesture() {
    postEvent(Event_TouchEnd);
    const std::int64_t dx = std::int64_t{gesture_.last.x} - gesture_.start.x;
    const std::int64_t dy = std::int64_t{gesture_.last.y} - gesture_.start.y;
    if (dx * dx + dy * dy <= TapDistanceSquared)
        postEvent(Event_TouchTouched);
    else if (nowMillis() - gesture_.downTime < SwipeMillis)
        postEvent(swipe(dx, dy));
}

EventId GuiManager::swipe(std::int64_t dx, std::int64_t dy) {
    if (std::abs(dx) > std::abs(dy)) return dx >= 0 ? Event_SwipeRight : Event_SwipeLeft;
    return dy >= 0 ? Event_SwipeDown : Event_SwipeUp;
}

// Pages.

void GuiManager::setActivePage(Page* page) {
    if (!mayChangePage(page)) return;
    ++pageNesting_;
    Page* left = activePage_;
    if (left != nullptr) leavePage(*left);
    // A page that a reaction entered while the old one was being left must not stay active behind our back.
    if (activePage_ != left && activePage_ != nullptr) leavePage(*activePage_);
    activePage_ = page;
    if (page != nullptr) enterPage(*page);
    publishPageName();
    --pageNesting_;
}

bool GuiManager::mayChangePage(const Page* page) const {
    if (pageNesting_ < MaxPageNesting) return true;
    engineLog(0, __FILE_NAME__, __LINE__,
              "Page changes are nested more than %i deep, going to %s is refused. Check the reactions on entering and "
              "leaving pages.",
              MaxPageNesting, page != nullptr ? page->objectName() : "NULL");
    return false;
}

void GuiManager::enterPage(Page& page) {
    Trace::instance().pageEntered(&page);
    page.enter(true);
    runPageEvent(page, Event_PageEntered);
    // A reaction may have gone on to another page already.
    if (!page.isActive()) return;
    if (pageListener_ != nullptr) pageListener_->pageEntered(page);
    if (overlappingMenu_ != nullptr && overlappingMenu_->ownerPage() == &page) overlappingMenu_->resetStrip();
}

void GuiManager::leavePage(Page& page) {
    Trace::instance().pageLeft(&page);
    runPageEvent(page, Event_PageExited);
    page.clearAllFocus();
    page.enter(false);
}

void GuiManager::runPageEvent(Page& page, EventId eventId) {
    Trace::instance().event("start", eventId);
    page.react(eventId, reactionQueue_);
    runReactions();
    Trace::instance().event("done", eventId);
}

void GuiManager::publishPageName() {
    if (pageNameVariable_ == nullptr) return;
    const char* title = activePage_ != nullptr ? activePage_->title() : nullptr;
    setVariableChecked(*pageNameVariable_, title != nullptr ? title : "");
}

void GuiManager::setSecondPage(Page* page) {
    if (secondPage_ == page) return;
    secondPage_ = page;
    if (page == nullptr) return;
    if (activePage_ != nullptr) activePage_->relayout();
    page->relayout();
}

void GuiManager::navigateTo(Page* page) {
    if (!mayChangePage(page)) return;
    if (activePage_ != nullptr && activePage_->hasFlag(Page::FlagInHistory)) pushHistory(activePage_);
    setActivePage(page);
}

void GuiManager::pushHistory(Page* page) {
    if (history_.size() > static_cast<std::size_t>(historyLimit_)) {
        engineLog(2, __FILE_NAME__, __LINE__, "Page history buffer is full, removing oldest entries.");
        history_.erase(history_.begin(), history_.begin() + std::max(1, historyLimit_ / 4));
    }
    history_.push_back(page);
}

bool GuiManager::goBack() {
    if (history_.empty() || !mayChangePage(history_.back())) return false;
    Page* page = history_.back();
    history_.pop_back();
    setActivePage(page);
    return true;
}

}  // namespace Engine
