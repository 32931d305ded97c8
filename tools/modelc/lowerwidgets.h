#pragma once

#include <set>
#include <string>

#include "tools/modelc/lowercontext.h"
#include "tools/modelc/schema.h"

namespace Modelc {

/// Lowers the widgets of one page: their records, and a modifier for each property that follows a rule.
class WidgetLowering {
  public:
    WidgetLowering(LoweringContext& context, LoweredUnit& unit, const UnitNode& node)
        : context_(context), unit_(unit), node_(node), values_(unit, context.rules(), context.ruleAddresses) {}

    /// Gives every widget its place, so that they can name each other.
    void reserve(const ObjectNode& parent, const std::string& path);
    /// Describes all widgets below `parent`.
    void describe(const ObjectNode& parent);
    /// A span of the children of `parent` as objects.
    std::string children(const ObjectNode& parent);

    /// The constant of a property as ".field = code", or empty after giving a modifier to it. `address` is the
    /// object's, `what` its path.
    std::string property(const PropertySchema& schema, const PropertyDecl& decl, const std::string& address,
                         const std::string& what);

  private:
    struct Widget {
        const ObjectNode& node;
        const ClassSchema& schema;
        std::string address;
        std::string path;
        std::set<std::string_view> used;  ///< properties that found their place
    };

    void addObjects(const ObjectNode& parent, std::vector<std::string>& addresses) const;
    void describeWidget(const ObjectNode& object);
    std::string params(Widget& widget);
    std::string arguments(Widget& widget);
    std::string argument(Widget& widget, std::string_view name, const std::string& fallback);
    std::string word(Widget& widget, std::string_view name);
    std::string groupArguments(Widget& widget);
    std::string labelArguments(Widget& widget);
    std::string iconArguments(Widget& widget);
    std::string levelArguments(Widget& widget);
    void levelValue(Widget& widget);

    // Scales.
    std::string scaleContainerArguments(Widget& widget);
    std::string pinchArguments(Widget& widget);
    void describeElement(const ObjectNode& object, const ClassSchema& schema);
    std::string elementArguments(Widget& element);
    void checkPlaceInScales(const ObjectNode& object, const ClassSchema& schema);
    void checkTemplates(const ObjectNode& object, const ClassSchema& schema);
    void refuseBehaviour(const ObjectNode& object);
    std::string templateAddress(const Widget& element, std::string_view name) const;
    std::string templateRecord(const Widget& element) const;
    std::string tableSource(Widget& widget);
    std::string floatVariable(Widget& widget, std::string_view name);
    std::string border(Widget& widget, std::string_view name);
    void rectangle(Widget& widget, std::map<std::string_view, std::string>& fields);
    void reportUnused(const Widget& widget);

    // Label contents.
    std::string content(Widget& widget, const PropertyDecl& decl);
    std::string concat(const Widget& widget, const std::string& templateId, const std::vector<ValuePtr>& parts,
                       Span span);
    std::string stringProvider(const Value& part, const std::string& what);
    std::string formatProvider(const FormattedValue& node, const std::string& what);
    std::string regex(const std::string& expression);
    const VariableInfo* language() const { return context_.names.variable("VarLanguage"); }

    LoweringContext& context_;
    LoweredUnit& unit_;
    const UnitNode& node_;
    ValueLowering values_;
    std::map<const ObjectNode*, std::string> elements_;  ///< addresses of the elements of scale containers
};

}  // namespace Modelc
