#pragma once

#include "embedded-gui-engine/targetaction.h"

namespace Engine {

class Widget;

/// Gives the focus of the widget's page to the widget alone. False when the widget has no page or is refused.
class WidgetSetFocus : public TargetAction<Widget> {
  public:
    constexpr explicit WidgetSetFocus(Widget* widget, const char* name = nullptr, std::uint32_t flags = Enabled)
        : TargetAction(widget, name, flags) {}

    bool execute() override;
    const char* name() const override { return nameOr("WidgetSetFocus"); }
};

}  // namespace Engine
