#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "embedded-gui-engine/eventqueue.h"
#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/point.h"
#include "embedded-gui-engine/reactionqueue.h"
#include "embedded-gui-engine/rect.h"
#include "embedded-gui-engine/touchevent.h"

namespace Engine {

class BehaviorContainer;
class Page;
class PageListener;
class PageStrip;
class Painter;
class PrepareCompositing;
class StringVariable;
class Widget;
template <typename T>
class ValueProvider;

/// The gesture of the first finger, in screen coordinates.
struct Gesture {
    Point start;
    Point last;
    Point delta;  ///< the last step
    Point path;   ///< sums of the absolute steps since the start
    bool down = false;
    std::uint32_t downTime = 0;  ///< milliseconds of the steady clock
};

/// The centre of the engine: owns the queues, the active page, the history and the touch gesture, and drives one
/// refresh cycle a frame. Nothing is allocated while events are handled. Main thread only.
class GuiManager final : public Observer {
  public:
    struct Limits {
        int history = 32;
        std::uint32_t events = 128;
        std::uint32_t reactions = 128;
    };
    /// What the model gives the manager to run. Either may be null.
    struct ModelHooks {
        /// Moves pending changes of all variables to their observers; called first in every refresh cycle.
        void (*syncVariables)() = nullptr;
        /// Builds and links the model's run-time data; a second call must do nothing.
        void (*linkModel)() = nullptr;
    };
    using ScaleCallback = void (*)(float scaleX, float scaleY);
    /// Whether drawing is bounded by the dirty area; the frame loop of a page-flipped display passes WholePage.
    enum class Clip : bool { WholePage = false, DirtyArea = true };

    static constexpr int EventBudget = 1000;  ///< events of one refresh cycle; one more ends the process
    static constexpr int MaxPageNesting = 8;  ///< page changes inside page changes

    GuiManager();
    explicit GuiManager(Limits limits);
    ~GuiManager();
    GuiManager(const GuiManager&) = delete;
    GuiManager& operator=(const GuiManager&) = delete;

    /// The manager that actions and widgets talk to: the one that was set, else one that is made on first use.
    static GuiManager& instance();
    /// Null goes back to the process's own. Not owned; answers the one that was set before, null for none.
    static GuiManager* setInstance(GuiManager* manager);

    // Wiring. Nothing is owned; null is allowed everywhere.
    void setPainter(Painter* painter) { painter_ = painter; }
    void setModelHooks(ModelHooks hooks) { modelHooks_ = hooks; }
    void setPageListener(PageListener* listener) { pageListener_ = listener; }
    void setPageNameVariable(StringVariable* variable) { pageNameVariable_ = variable; }
    void setRotationProvider(ValueProvider<int>* provider) { rotationProvider_ = provider; }
    void setScale(ValueProvider<float>* x, ValueProvider<float>* y, ScaleCallback callback);
    void setPageStrip(PageStrip* strip) { overlappingMenu_ = strip; }
    void setCompositor(PrepareCompositing* compositor) { compositor_ = compositor; }
    PrepareCompositing* compositor() const { return compositor_; }
    void setDrawDebugFrames(bool on) { drawDebugFrames_ = on; }
    /// The pages that are always there, lowest first. Each is entered once, here.
    void setOverlays(std::span<Page* const> overlays);
    void setContainers(std::span<BehaviorContainer* const> containers) { containers_ = containers; }

    /// Runs the model's link step.
    void linkModel();
    /// Runs the link step once more and lets events in.
    void finishInitialization();
    bool isInitializing() const { return initializing_; }

    // Events.
    /// False when the event was dropped: while initializing, or because the queue is full, which `droppedEvents` and
    /// the trace tell.
    bool postEvent(EventId eventId);
    /// Always true.
    bool handleTouch(const TouchEvent& event);
    /// One refresh cycle; true when something must be drawn. `force` has no effect on the result.
    bool processEvents(bool force);
    std::uint32_t droppedEvents() const { return eventQueue_.dropped(); }
    std::uint32_t droppedReactions() const { return reactionQueue_.dropped(); }
    const Gesture& gesture() const { return gesture_; }
    Widget* touchGrabber() const { return touchGrabber_; }
    /// Offers a touch to the children of a page; the widget that took it, or null.
    static Widget* offerTouch(Page& page, const TouchEvent& event);

    // Pages.
    Page* activePage() const { return activePage_; }
    Page* secondPage() const { return secondPage_; }
    /// Null leaves no page active.
    void setActivePage(Page* page);
    void setSecondPage(Page* page);
    /// Remembers the present page if it is one for the history.
    void navigateTo(Page* page);
    bool goBack();
    // For a page strip, which holds pages active beside the active one in turn: a page becomes active, or ends that,
    // with its event and the reactions to it. `activePage` and the history stay as they are.
    void enterPage(Page& page);
    void leavePage(Page& page);
    void clearHistory() { history_.clear(); }
    std::span<Page* const> history() const { return history_; }

    // Drawing.
    Painter* painter() const { return painter_; }
    /// (0, 0, logical size), empty without a painter.
    Rect screenRect() const;
    void setRotation(int degrees);
    void drawFrame(Clip clip = Clip::WholePage);
    /// Composes the two pages of a slide; nothing when none runs.
    void finishFrame();

    // Time, in milliseconds of the steady clock; wraps.
    static std::uint32_t nowMillis();
    /// Since the last call.
    int elapsedMillis();

    /// Hands the values of the scale providers to the scale callback.
    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

  private:
    /// Whether the dirty areas of the overlays count for the page below them.
    enum class Overlays : bool { Left, Counted };

    void handleEvent(EventId eventId);
    void runReactions();
    void dispatchEvent(EventId eventId);
    void dispatchToPages(EventId eventId);
    void offerEvent(Page& page, EventId eventId);
    Page* modalOverlay() const;
    bool stripBelongsToActivePage() const;
    [[noreturn]] void dieOfTooManyEvents();
    void tick(int elapsedMs);
    bool needsDrawing() const;

    void trackGesture(const TouchEvent& event);
    Widget* routeTouch(const TouchEvent& event);
    void endGesture();
    static EventId swipe(std::int64_t dx, std::int64_t dy);

    bool mayChangePage(const Page* page) const;
    void runPageEvent(Page& page, EventId eventId);
    void pushHistory(Page* page);
    void publishPageName();

    void applyRotationProvider();
    void drawScreen(Clip clip);
    void drawSlide(Clip clip);
    void drawSurface(std::unique_ptr<Painter>& surface, Page& page, Clip clip);
    void drawPage(Page& page, Painter& painter, Overlays overlays, Clip clip);
    Rect dirtyArea(const Page& page, Overlays overlays, Rect whole) const;
    void drawOverlays();
    void drawOutlines();

    Page* activePage_ = nullptr;
    Page* secondPage_ = nullptr;
    std::span<Page* const> overlays_;
    std::span<BehaviorContainer* const> containers_;
    PageListener* pageListener_ = nullptr;
    Painter* painter_ = nullptr;
    std::unique_ptr<Painter> pageSurfaceA_;  ///< made on the first slide and kept
    std::unique_ptr<Painter> pageSurfaceB_;
    StringVariable* pageNameVariable_ = nullptr;
    ValueProvider<int>* rotationProvider_ = nullptr;
    ValueProvider<float>* scaleXProvider_ = nullptr;  ///< null counts as 1
    ValueProvider<float>* scaleYProvider_ = nullptr;
    ScaleCallback scaleCallback_ = nullptr;
    bool initializing_ = true;
    bool drawDebugFrames_ = false;
    int historyLimit_;
    std::vector<Page*> history_;
    PrepareCompositing* compositor_ = nullptr;
    PageStrip* overlappingMenu_ = nullptr;
    EventQueue eventQueue_;
    ReactionQueue reactionQueue_;
    std::uint32_t lastTick_;
    Gesture gesture_;
    Widget* touchGrabber_ = nullptr;
    ModelHooks modelHooks_;
    int pageNesting_ = 0;
};

}  // namespace Engine
