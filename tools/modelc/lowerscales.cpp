// The part of the widget lowering that concerns scales: their containers, elements and templates.
#include <algorithm>

#include "tools/modelc/lowerwidgets.h"

namespace Modelc {

// Containers and pinches.

std::string WidgetLowering::scaleContainerArguments(Widget& widget) {
    const std::string position = argument(widget, "position", "0.0f");
    const std::string follow = word(widget, "follow");
    const std::string magnification = argument(widget, "magnification", "1.0f");
    const bool reversed = argument(widget, "reversed", "false") == "true";
    const std::string table = tableSource(widget);
    const std::string start = floatVariable(widget, "visibleStart");
    const std::string end = floatVariable(widget, "visibleEnd");
    std::vector<std::string> elements;
    for (const auto& child : widget.node.children)
        if (const auto found = elements_.find(child.get()); found != elements_.end()) elements.push_back(found->second);
    return "Engine::ScaleContainer::Params{.position = " + position +
           ", .elements = " + unit_.table("Engine::ScaleContainerElement* const", "elementLists", elements) +
           ", .follow = " + (follow.empty() ? "Engine::ScaleContainer::Follow::Inside" : follow) +
           ", .magnification = " + magnification +
           ", .direction = Engine::ScaleContainer::Direction::" + (reversed ? "Up" : "Down") + ", .table = " + table +
           ", .visibleStart = " + start + ", .visibleEnd = " + end + "}, " + children(widget.node);
}

std::string WidgetLowering::pinchArguments(Widget& widget) {
    const std::string variable = floatVariable(widget, "value");
    const std::string minimum = argument(widget, "minimum", "1.0f");
    const std::string maximum = argument(widget, "maximum", "10.0f");
    return variable + ", " + variable + ", " + minimum + ", " + maximum;
}

/// The table that the widget shows, and the widget among its observers.
std::string WidgetLowering::tableSource(Widget& widget) {
    const PropertyDecl* decl = widget.node.property("table");
    if (decl == nullptr) return "nullptr";
    widget.used.insert("table");
    const VariableInfo* variable = context_.resolver.variable(decl->value);
    if (variable == nullptr) return "nullptr";
    if (variable->kind != VariableKind::Table) {
        context_.diagnostics.error(decl->value->span, "'" + variable->name + "' is no table",
                                   "name a table of the catalogue");
        return "nullptr";
    }
    context_.observe(variable, widget.address, widget.path + ".table");
    return tableSourceOf(unit_, *variable);
}

/// A variable that the widget writes.
std::string WidgetLowering::floatVariable(Widget& widget, std::string_view name) {
    const PropertyDecl* decl = widget.node.property(name);
    if (decl == nullptr) return "nullptr";
    widget.used.insert(name);
    const VariableInfo* variable = context_.resolver.variable(decl->value);
    if (variable == nullptr) return "nullptr";
    if (variable->kind != VariableKind::Float) {
        context_.diagnostics.error(decl->value->span, "'" + std::string(name) + "' writes a float variable",
                                   "'" + variable->name + "' is none");
        return "nullptr";
    }
    context_.use(variable);
    context_.explanation.writes.push_back({variable->name, widget.path + "." + std::string(name), decl->value->span});
    return variable->address;
}

// Elements.

void WidgetLowering::checkPlaceInScales(const ObjectNode& object, const ClassSchema& schema) {
    const ClassSchema* outer = object.parent != nullptr ? classSchema(object.parent->type.text) : nullptr;
    const bool inContainer = outer != nullptr && outer->holdsElements();
    if (schema.isElement() && !inContainer)
        context_.diagnostics.error(object.type.span, withArticle(schema.name) + " stands in a ScaleContainer only");
    if (!schema.isElement() && inContainer)
        context_.diagnostics.error(
            object.type.span, "a ScaleContainer holds no " + std::string(schema.name),
            "it holds Scale and MarkerIndicator, RangeIndicator, ObjectIndicator, FixedIndicator");
}

void WidgetLowering::describeElement(const ObjectNode& object, const ClassSchema& schema) {
    Widget element{object, schema, elements_.at(&object), context_.widgetPaths.at(&object), {}};
    checkTemplates(object, schema);
    refuseBehaviour(object);
    unit_.describe(element.address, "Engine::" + std::string(schema.name) + "(" + elementArguments(element) + ")");
    reportUnused(element);
    describe(object);
}

std::string WidgetLowering::elementArguments(Widget& element) {
    const auto container = context_.widgetAddresses.find(element.node.parent);
    std::string result = (container != context_.widgetAddresses.end() ? container->second : "nullptr") + ", ";
    if (element.schema.name == "Scale") {
        const std::string place = word(element, "subLabelPlace");
        result += templateRecord(element) + ", " + (place.empty() ? "Engine::Scale::SubLabel::StaysInPlace" : place);
    } else if (element.schema.name == "MarkerIndicator") {
        result += templateRecord(element) + ", " + argument(element, "value", "0.0f");
    } else if (element.schema.name == "RangeIndicator") {
        const std::string from = argument(element, "from", "0.0f");
        result += templateAddress(element, "band") + ", " + from + ", " + argument(element, "to", "0.0f");
    } else if (element.schema.name == "FixedIndicator") {
        result += templateAddress(element, "figure");
    } else {
        const std::string table = tableSource(element);
        result += table + ", " + templateAddress(element, "object") + ", " + argument(element, "span", "0");
    }
    return result + ", " + argument(element, "visible", "true");
}

std::string WidgetLowering::templateAddress(const Widget& element, std::string_view name) const {
    for (const auto& child : element.node.children)
        if (child->name.text == name)
            if (const auto found = context_.widgetAddresses.find(child.get()); found != context_.widgetAddresses.end())
                return found->second;
    return "nullptr";
}

std::string WidgetLowering::templateRecord(const Widget& element) const {
    std::string fields;
    for (const auto name : element.schema.templates)
        if (const std::string address = templateAddress(element, name); address != "nullptr")
            fields += (fields.empty() ? "." : ", .") + std::string(name) + " = " + address;
    return "{" + fields + "}";
}

void WidgetLowering::checkTemplates(const ObjectNode& object, const ClassSchema& schema) {
    std::vector<std::string_view> seen;
    for (const auto& child : object.children) {
        const std::string& name = child->name.text;
        if (std::find(schema.templates.begin(), schema.templates.end(), name) == schema.templates.end()) {
            std::string list;
            for (const auto one : schema.templates) list += (list.empty() ? "" : ", ") + std::string(one);
            const std::string guess = didYouMean(name, schema.templates);
            context_.diagnostics.error(
                name.empty() ? child->type.span : child->name.span,
                withArticle(schema.name) + " has no template " + (name.empty() ? "without a name" : "'" + name + "'"),
                guess.empty() ? "its templates are called " + list : guess);
        } else if (std::find(seen.begin(), seen.end(), name) != seen.end()) {
            context_.diagnostics.error(child->name.span, "'" + name + "' stands here twice");
        } else if (name.ends_with("Label") && child->type.text != "Label") {
            context_.diagnostics.error(child->type.span, "'" + name + "' is a Label");
        }
        seen.push_back(name);
    }
}

/// An element has no area that a touch could hit.
void WidgetLowering::refuseBehaviour(const ObjectNode& object) {
    const auto refuse = [&](const auto& list, const char* what) {
        for (const auto& owned : list)
            if (owned.owner == &object)
                context_.diagnostics.error(owned.span, withArticle(object.type.text) + " has no " + what,
                                           "put it into the ScaleContainer");
    };
    refuse(node_.reactions, "reactions");
    refuse(node_.timers, "timers");
    refuse(node_.triggers, "triggers");
}

}  // namespace Modelc
