#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/callbackobserver.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

enum class Layout : std::uint32_t {
    Row = 0,
    Column = 1,
    Free = 2,  ///< children stay; the group's size follows them
    Fixed = 3  ///< children and group stay
};

/// A widget that lays out and draws child widgets. Layout happens while painting, so a child's place is known only
/// after a frame, and the places of a row or column are absolute.
class Group : public Widget {
  public:
    /// Whether reactions of the group run whenever it is operable, or only while it is highlighted (list rows).
    enum class Reacts : std::uint8_t { WhenHighlighted = 0, Always = 1 };

    constexpr explicit Group(const WidgetParams& params, Layout layout = Layout::Free,
                             std::span<Object* const> children = {}, Reacts reacts = Reacts::Always,
                             Widget* fallbackFocus = nullptr)
        : Widget(params, children),
          layout_(layout),
          alwaysEnabled_(reacts),
          fallbackFocus_(fallbackFocus),
          focusRequest_(*this) {}
    Group(const Group&) = delete;
    Group& operator=(const Group&) = delete;

    bool isEnabled() const override;
    const char* objectName() const override { return nameOr("Group"); }
    /// Every child follows.
    void setHighlighted(bool highlighted) override;
    void setPadding(std::uint16_t padding) override;
    /// Adapts the group's width to its parent and its height to its children, unless the layout is fixed.
    void childGeometryChanged() override;
    void setParent(Object* parent) override;
    void draw(Painter& painter, Rect rect) override;
    void setChildren(Object* const* children, std::uint16_t count) override;
    /// When the group hides while it holds the focus, `fallbackFocus` takes over.
    void setEnabled(bool enabled) override;
    void setDisabled(bool disabled) override;

    void setFallbackFocus(Widget* widget) { fallbackFocus_ = widget; }
    Layout layout() const { return layout_; }

  private:
    /// Waits on a page that is not active and gives it the fallback focus when it is entered.
    struct FocusRequest final : CallbackObserver {
        constexpr explicit FocusRequest(Group& owner) : CallbackObserver(&giveFocus), group(&owner) {}
        static void giveFocus(CallbackObserver* self, std::intptr_t, std::intptr_t);
        Group* group;
    };

    int contentHeight() const;
    void placeRow(Rect content);
    void placeColumn(Rect content);
    static bool dropFocusBelow(Object& object);

    Layout layout_;
    Reacts alwaysEnabled_;
    Widget* fallbackFocus_;
    FocusRequest focusRequest_;
};

}  // namespace Engine
