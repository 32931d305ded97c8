#include "tools/modelc/schema.h"

#include <algorithm>

namespace Modelc {

namespace {

constexpr std::string_view widget = "Engine::Widget";
constexpr std::string_view small = "std::int16_t";

const PropertySchema elementShown = {"visible", Type::Bool,    {}, "setEnabled", "Engine::ScaleContainerElement",
                                     {},        "drawn at all"};

}  // namespace

const std::vector<PropertySchema>& widgetProperties() {
    // In the order of the parameter record, as designated initialisers need it.
    static const std::vector<PropertySchema> rows = {
        {"x", Type::Int, "x", "setX", widget, small, "left edge, relative to the parent"},
        {"y", Type::Int, "y", "setY", widget, small, "top edge, relative to the parent"},
        {"width", Type::Int, "width", "setWidth", widget, small, "pixels"},
        {"height", Type::Int, "height", "setHeight", widget, small, "pixels"},
        {"scrollX", Type::Int, "scrollX", "", {}, {}, "moves the content inside the widget"},
        {"scrollY", Type::Int, "scrollY", "", {}, {}, "moves the content inside the widget"},
        {"visible", Type::Bool, "enabled", "setEnabled", widget, {}, "shown at all"},
        {"foreground", Type::Color, "foreground", "setForeground", widget, {}, "colour of text, masks and bars"},
        {"background", Type::Color, "background", "setBackground", widget, {}, "colour behind the content"},
        {"disabled", Type::Bool, "disabled", "setDisabled", widget, {}, "greyed out and not operable"},
        {"disabledForeground", Type::Color, "disabledForeground", "setDisabledForeground", widget, {}, {}},
        {"disabledBackground", Type::Color, "disabledBackground", "setDisabledBackground", widget, {}, {}},
        {"highlightForeground", Type::Color, "highlightForeground", "setHighlightForeground", widget, {}, {}},
        {"highlightBackground", Type::Color, "highlightBackground", "setHighlightBackground", widget, {}, {}},
        {"highlightFont", Type::Font, "highlightFont", "", {}, {}, {}},
        {"font", Type::Font, "font", "setFont", widget, {}, {}},
        {"wrap", Type::Bool, "wrap", "", {}, {}, "text breaks at the width"},
        {"align", Type::Align, "horizontalAlign", "setHorizontalAlign", widget, {}, {}},
        {"verticalAlign", Type::Align, "verticalAlign", "setVerticalAlign", widget, {}, {}},
        {"padding", Type::Int, "padding", "setPadding", widget, "std::uint16_t",
         "free pixels between border and content"},
        {"haloColor", Type::Color, "haloColor", "setHaloColor", widget, {}, {}},
        {"halo", Type::Int, "haloRadius", "setHaloRadius", widget, "std::int32_t",
         "pixels of halo around text or mask"},
    };
    return rows;
}

const std::vector<PropertySchema>& pageProperties() {
    static const std::vector<PropertySchema> rows = {
        {"background", Type::Color, "backgroundColor", "setBackgroundColor", "Engine::Page", {}, {}},
        {"visible", Type::Bool, "enabled", "setVisible", "Engine::Page", {}, "overlays are shown by it"},
        {"modal", Type::Bool, "modal", "setModal", "Engine::Page", {}, "takes events and touches alone while shown"},
        {"transparent", Type::Bool, "noBackground", "", {}, {}, "what lies below shows"},
        {"history", Type::Bool, "inHistory", "", {}, {}, "remembered when it is left"},
        {"fullBackground", Type::Bool, "fullBackground", "", {}, {}, "blend the background over the screen"},
    };
    return rows;
}

const std::vector<ClassSchema>& classSchemas() {
    static const std::vector<ClassSchema> rows = {
        {"Group",
         "groups",
         {},
         {{"layout", "Engine::Layout", {{"row", "Row"}, {"column", "Column"}, {"free", "Free"}, {"fixed", "Fixed"}}},
          {"reacts", "Engine::Group::Reacts", {{"always", "Always"}, {"highlighted", "WhenHighlighted"}}}},
         {"fallbackFocus"},
         true},
        {"Label",
         "labels",
         {},
         {{"ellipsis", "Engine::Ellipsis", {{"none", "None"}, {"end", "End"}, {"start", "Start"}}},
          {"case",
           "Engine::CaseMode",
           {{"asWritten", "AsWritten"}, {"upper", "Upper"}, {"lower", "Lower"}, {"words", "Words"}}},
          {"autoHeight", "Engine::Label::AutoHeight", {{"on", "On"}, {"off", "Off"}}}},
         {"text", "fit"},
         false},
        {"Icon",
         "icons",
         {{"image", Type::Image, {}, "setImage", "Engine::Icon", {}, {}}},
         {{"tiling", "Engine::Icon::Tiling", {{"off", "Off"}, {"cross", "Cross"}}},
          {"slicing", "Engine::Icon::Slicing", {{"off", "Off"}, {"nine", "Nine"}}}},
         {},
         false},
        {"Level",
         "levels",
         {{"thickness", Type::Int, {}, {}, {}, {}, "of the pointer, in pixels"},
          {"steps", Type::Float, {}, {}, {}, {}, "equal steps of the range, 0 for none"},
          {"image", Type::Image, {}, {}, {}, {}, {}},
          {"minimum", Type::Float, {}, "setMinimum", "Engine::Level", {}, {}},
          {"maximum", Type::Float, {}, "setMaximum", "Engine::Level", {}, {}}},
         {{"direction",
           "Engine::Level::Direction",
           {{"left", "Left"}, {"right", "Right"}, {"up", "Up"}, {"down", "Down"}}},
          {"mode", "Engine::Level::Mode", {{"bar", "Bar"}, {"pointer", "Pointer"}}}},
         {"value"},
         false},
        {"ScaleContainer",
         "scaleContainers",
         {{"position", Type::Float, {}, "setPosition", "Engine::ScaleContainer", {}, "fraction that is kept in view"},
          {"magnification", Type::Float, {}, "setMagnification", "Engine::ScaleContainer", {}, "windows a scale"},
          {"reversed", Type::Bool, {}, "setReversed", "Engine::ScaleContainer", {}, "runs from bottom to top"}},
         {{"follow", "Engine::ScaleContainer::Follow", {{"inside", "Inside"}, {"centred", "Centred"}}}},
         {"table", "visibleStart", "visibleEnd"},
         true},
        {"Scale",
         "scales",
         {elementShown},
         {{"subLabelPlace", "Engine::Scale::SubLabel", {{"stays", "StaysInPlace"}, {"follows", "FollowsMainLabel"}}}},
         {},
         true,
         {"majorTick", "mediumTick", "minorTick", "mainLabel", "subLabel"}},
        {"MarkerIndicator",
         "markers",
         {elementShown, {"value", Type::Float, {}, "setValue", "Engine::MarkerIndicator", {}, "fraction of the scale"}},
         {},
         {},
         true,
         {"marker", "above", "below"}},
        {"RangeIndicator",
         "ranges",
         {elementShown,
          {"from", Type::Float, {}, "setFrom", "Engine::RangeIndicator", {}, "fraction of the scale"},
          {"to", Type::Float, {}, "setTo", "Engine::RangeIndicator", {}, "fraction of the scale"}},
         {},
         {},
         true,
         {"band"}},
        {"ObjectIndicator",
         "objectIndicators",
         {elementShown, {"span", Type::Int, {}, {}, {}, {}, "pixels across"}},
         {},
         {"table"},
         true,
         {"object"}},
        {"FixedIndicator", "fixedIndicators", {elementShown}, {}, {}, true, {"figure"}},
        {"PinchScaleWidget",
         "pinches",
         {{"minimum", Type::Float, {}, "setMinimum", "Engine::PinchScaleWidget", {}, "of what is written"},
          {"maximum", Type::Float, {}, "setMaximum", "Engine::PinchScaleWidget", {}, "of what is written"}},
         {},
         {"value"},
         false},
    };
    return rows;
}

const ClassSchema* classSchema(std::string_view name) {
    const auto& all = classSchemas();
    const auto found = std::find_if(all.begin(), all.end(), [&](const ClassSchema& one) { return one.name == name; });
    return found != all.end() ? &*found : nullptr;
}

}  // namespace Modelc
