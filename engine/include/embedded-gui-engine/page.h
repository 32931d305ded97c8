#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "embedded-gui-engine/color.h"
#include "embedded-gui-engine/object.h"
#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/point.h"
#include "embedded-gui-engine/reactable.h"
#include "embedded-gui-engine/reactionee.h"
#include "embedded-gui-engine/rect.h"

namespace Engine {

class Widget;

/// The record that a page is built from.
struct PageParams {
    const char* name = nullptr;   ///< readable; for log, trace and `objectName`
    const char* title = nullptr;  ///< what the manager's page name variable gets
    Color backgroundColor = 0xFF000000;
    bool enabled = true;          ///< shown; overlays are shown by enabling them
    bool modal = false;           ///< while shown, takes events and touches alone
    bool noBackground = false;    ///< what lies below shows
    bool inHistory = false;       ///< remembered when it is left by navigation
    bool fullBackground = false;  ///< blend the background over the screen instead of clearing
    std::span<Object* const> children = {};
    ReactableParams behavior = {};
};

/// A full-screen root of the object tree with its own background, reactions, focus and dirty rectangle.
class Page : public Reactionee, public Reactable, public Object {
  public:
    enum PageFlag : std::uint32_t { FlagModal = 0x80, FlagNoBackground = 0x100, FlagInHistory = 0x200 };
    /// A dirty rectangle of this width and height stands for the whole screen.
    static constexpr std::int16_t WholeScreen = -1;
    static constexpr std::size_t FocusSlots = 4;
    /// Deferred widgets are focused ones, so a page never has more of them than focus slots; twice that for safety.
    static constexpr std::size_t DeferredSlots = 8;

    constexpr explicit Page(const PageParams& params)
        : Reactable(params.behavior),
          Object(params.name, flagsOf(params), params.children),
          title_(params.title),
          backgroundColor_(params.backgroundColor),
          fullBackground_(params.fullBackground) {}
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    bool isEnabled() const override { return true; }
    const char* objectName() const override { return name_ != nullptr ? name_ : "Page"; }
    bool isPage() const final { return true; }
    bool isWidget() const final { return false; }
    virtual Page* self() { return this; }
    Object* getParent() const override { return nullptr; }
    void relayout() override { redrawAll(); }
    virtual void setBackgroundColor(Color color);
    /// Marks the page, then shows or hides it, without comparing.
    virtual void setVisible(bool visible);
    /// Draws the background, the children and then the deferred widgets; nothing but the reset of the dirty
    /// rectangle while the page is hidden.
    virtual void draw(Painter& painter);

    /// Marks the whole screen, whether the page is shown or not: a page that is being shown must bring about a frame.
    void invalidate() override { redrawAll(); }
    void redrawAll() { dirty_ = {0, 0, WholeScreen, WholeScreen}; }
    void addDirty(Rect rect);
    Rect dirty() const { return dirty_; }
    bool isDirty() const { return dirty_.width != 0 && dirty_.height != 0; }

    /// Becomes active and refreshes what waited for that, or stops being active.
    void enter(bool entered);
    bool isActive() const { return hasFlag(FlagPageActive); }
    bool isShown() const { return hasFlag(FlagEnabled); }
    bool isModal() const { return hasFlag(FlagModal); }
    bool isRedrawing() const { return hasFlag(FlagRedrawing); }
    bool isDrawingDeferred() const { return hasFlag(FlagDrawingDeferred); }

    void setModal(bool modal) { setFlag(FlagModal, modal); }

    // Focus: four slots, one a focus group. A null widget is refused.
    /// Clears all slots, then takes the first one. False when the widget cannot have the focus; then nobody has it.
    bool setFocus(Widget* widget);
    /// Takes the first free slot; false when the widget cannot have the focus or no slot is free.
    bool addFocus(Widget* widget);
    void clearFocus(Widget* widget);
    void clearAllFocus();
    /// Null for an empty slot.
    Widget* focus(int slot) const { return focus_[static_cast<std::size_t>(slot)]; }

    /// Asks that a widget is drawn after all others in this redraw; false when there is no room.
    bool defer(Widget* widget);
    bool hasDeferred() const { return deferredCount_ > 0; }

    const char* title() const { return title_; }
    Color backgroundColor() const { return backgroundColor_; }
    /// Where the page's top left corner lies on the screen.
    Point origin() const { return {originX_, originY_}; }
    void setOrigin(std::int16_t x, std::int16_t y) {
        originX_ = x;
        originY_ = y;
    }

  private:
    static constexpr std::uint32_t flagsOf(const PageParams& params) {
        return FlagIsPage | (params.enabled ? FlagEnabled : 0u) | (params.modal ? FlagModal : 0u) |
               (params.noBackground ? FlagNoBackground : 0u) | (params.inHistory ? FlagInHistory : 0u);
    }
    void drawBackground(Painter& painter) const;
    void drawDeferred(Painter& painter);
    bool canFocus(const Widget* widget) const;
    bool takeSlot(Widget* widget);
    void emptySlot(Widget*& slot);

    std::array<Widget*, FocusSlots> focus_{};
    std::array<Widget*, DeferredSlots> deferred_{};
    std::size_t deferredCount_ = 0;
    const char* title_;
    Color backgroundColor_;
    Rect dirty_;
    bool fullBackground_;
    std::int16_t originX_ = 0;
    std::int16_t originY_ = 0;
};

}  // namespace Engine
