#include "tools/modelc/lowerwidgets.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "tools/modelc/cppliteral.h"

namespace Modelc {

namespace {

/// Bytes of a part's text: a label shows 255 bytes at most, and hardly any value is longer than this.
constexpr std::size_t shortText = 32;
constexpr std::size_t longText = 256;

/// Of the parameter record, in its order: designated initialisers must keep it.
constexpr std::string_view recordFields[] = {
    "x",
    "y",
    "width",
    "height",
    "scrollX",
    "scrollY",
    "enabled",
    "foreground",
    "background",
    "disabled",
    "disabledForeground",
    "disabledBackground",
    "highlightForeground",
    "highlightBackground",
    "highlightFont",
    "highlightBorder",
    "font",
    "wrap",
    "horizontalAlign",
    "verticalAlign",
    "padding",
    "haloColor",
    "haloRadius",
    "border",
    "name",
};

/// Setters of different classes share names, and an array holds one class.
std::string arrayOf(std::string_view target, std::string_view setter) {
    std::string result;
    if (target != "Engine::Widget")
        for (const char c : target.substr(target.rfind(':') + 1))
            if (std::isalnum(static_cast<unsigned char>(c)) != 0) result += c;
    return result + std::string(setter);
}

std::string joined(const std::vector<std::string>& items) {
    std::string result;
    for (const auto& item : items) result += (result.empty() ? "" : ", ") + item;
    return result;
}

}  // namespace

// Places.

void WidgetLowering::reserve(const ObjectNode& parent, const std::string& path) {
    int unnamed = 0;
    for (const auto& child : parent.children) {
        const std::string own =
            path + "." + (child->name.text.empty() ? child->type.text + std::to_string(unnamed++) : child->name.text);
        context_.widgetPaths[child.get()] = own;
        if (const ClassSchema* schema = classSchema(child->type.text)) {
            auto& addresses = schema->isElement() ? elements_ : context_.widgetAddresses;
            addresses[child.get()] = unit_.reserve("Engine::" + std::string(schema->name), schema->array);
            if (!schema->isElement()) ++unit_.widgetCount;
        }
        reserve(*child, own);
    }
}

std::string WidgetLowering::children(const ObjectNode& parent) {
    std::vector<std::string> addresses;
    addObjects(parent, addresses);
    return unit_.table("Engine::Object* const", "childLists", addresses);
}

/// The templates of a scale container's elements are its children.
void WidgetLowering::addObjects(const ObjectNode& parent, std::vector<std::string>& addresses) const {
    for (const auto& child : parent.children) {
        if (const auto found = context_.widgetAddresses.find(child.get()); found != context_.widgetAddresses.end())
            addresses.push_back(found->second);
        else if (elements_.contains(child.get()))
            addObjects(*child, addresses);
    }
}

void WidgetLowering::describe(const ObjectNode& parent) {
    for (const auto& child : parent.children) describeWidget(*child);
}

void WidgetLowering::describeWidget(const ObjectNode& object) {
    const ExpansionScope scope(context_.diagnostics, object.expansion);
    const ClassSchema* schema = classSchema(object.type.text);
    if (schema == nullptr) {
        std::vector<std::string_view> classes = {"UserButton"};
        for (const auto& one : classSchemas()) classes.push_back(one.name);
        std::string guess = didYouMean(object.type.text, classes);
        context_.diagnostics.error(object.type.span, "there is no widget or template '" + object.type.text + "'",
                                   guess.empty() ? "widgets are Group, Label, Icon, Level, ScaleContainer and "
                                                   "PinchScaleWidget; templates are declared with  template"
                                                 : guess);
        return;
    }
    checkPlaceInScales(object, *schema);
    if (schema->isElement()) return describeElement(object, *schema);
    Widget widget{object, *schema, context_.widgetAddresses.at(&object), context_.widgetPaths.at(&object), {}};
    if (!schema->hasChildren && !object.children.empty())
        context_.diagnostics.error(object.children.front()->type.span,
                                   withArticle(object.type.text) + " has no children", "put both into a Group");
    const std::string record = params(widget);
    const std::string more = arguments(widget);
    unit_.describe(widget.address,
                   "Engine::" + std::string(schema->name) + "(" + record + (more.empty() ? "" : ", " + more) + ")");
    if (!object.children.empty()) unit_.parents.push_back(widget.address);
    reportUnused(widget);
    describe(object);
}

void WidgetLowering::reportUnused(const Widget& widget) {
    for (const auto& decl : widget.node.properties) {
        if (widget.used.contains(decl.name.text)) continue;
        std::vector<std::string_view> known;
        if (!widget.schema.isElement()) {
            known = {"rect", "border", "highlightBorder"};
            for (const auto& one : widgetProperties()) known.push_back(one.name);
        }
        for (const auto& one : widget.schema.properties) known.push_back(one.name);
        for (const auto& one : widget.schema.words) known.push_back(one.name);
        known.insert(known.end(), widget.schema.special.begin(), widget.schema.special.end());
        context_.diagnostics.error(decl.name.span,
                                   withArticle(widget.node.type.text) + " has no property '" + decl.name.text + "'",
                                   didYouMean(decl.name.text, known));
    }
}

// Records.

std::string WidgetLowering::property(const PropertySchema& schema, const PropertyDecl& decl, const std::string& address,
                                     const std::string& what) {
    const ValuePtr value = context_.resolver.value(decl.value, schema.type);
    if (value == nullptr) return {};
    context_.useAll(*value);
    context_.explanation.rules.push_back({what + "." + std::string(schema.name), decl.value->span, value});
    if (const auto* constant = value->constant()) return constant->code;
    if (schema.setter.empty()) {
        context_.diagnostics.error(decl.value->span, "'" + std::string(schema.name) + "' cannot follow a rule",
                                   "give it a constant");
        return {};
    }
    const std::string target(schema.target);
    const std::string member = "&" + target + "::" + std::string(schema.setter);
    const auto* inverse = std::get_if<NotValue>(&value->node);
    const auto* flag = inverse != nullptr ? std::get_if<VariableValue>(&inverse->operand->node) : nullptr;
    std::string observer;
    std::string array = arrayOf(target, schema.setter) + (flag != nullptr ? "Inverses" : "Modifiers");
    if (flag != nullptr) {
        const std::string cls = "Engine::InverseModifier<" + target + ">";
        observer = unit_.add(cls, array, cls + "(" + address + ", " + member + ", " + flag->variable->address + ")");
    } else {
        const std::string cls = "Engine::Modifier<" + target + ", " + std::string(cppType(schema.type)) +
                                (schema.argument.empty() ? "" : ", " + std::string(schema.argument)) + ">";
        observer = unit_.add(cls, array, cls + "(" + address + ", " + member + ", " + values_.provider(*value) + ")");
    }
    context_.observe(readVariables(*value), observer, what + "." + std::string(schema.name));
    return {};
}

void WidgetLowering::rectangle(Widget& widget, std::map<std::string_view, std::string>& fields) {
    const PropertyDecl* decl = widget.node.property("rect");
    if (decl == nullptr) return;
    widget.used.insert("rect");
    const auto* list = std::get_if<ListExpr>(&decl->value->node);
    if (list == nullptr || list->items.size() != 4) {
        context_.diagnostics.error(decl->value->span, "a rectangle has four numbers",
                                   "write  rect: X, Y, WIDTH, HEIGHT");
        return;
    }
    static constexpr std::array<std::string_view, 4> names = {"x", "y", "width", "height"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (widget.node.property(names[i]) != nullptr) {
            context_.diagnostics.error(widget.node.property(names[i])->name.span,
                                       "'" + std::string(names[i]) + "' stands in 'rect' already");
            continue;
        }
        const auto& schema = widgetProperties()[i];
        const std::string code = property(schema, {{std::string(names[i]), list->items[i]->span}, list->items[i]},
                                          widget.address, widget.path);
        if (!code.empty()) fields[schema.field] = code;
    }
}

std::string WidgetLowering::params(Widget& widget) {
    std::map<std::string_view, std::string> fields;
    rectangle(widget, fields);
    for (const auto& schema : widgetProperties()) {
        const PropertyDecl* decl = widget.node.property(schema.name);
        if (decl == nullptr) continue;
        widget.used.insert(schema.name);
        const std::string code = property(schema, *decl, widget.address, widget.path);
        if (!code.empty()) fields[schema.field] = code;
    }
    for (const char* name : {"border", "highlightBorder"})
        if (const std::string code = border(widget, name); !code.empty()) fields[name] = code;
    fields["name"] = cppString(widget.path);

    std::vector<std::string> given;
    for (const auto field : recordFields)
        if (const auto found = fields.find(field); found != fields.end())
            given.push_back("." + std::string(field) + " = " + found->second);
    return "{" + joined(given) + "}";
}

std::string WidgetLowering::border(Widget& widget, std::string_view name) {
    const PropertyDecl* decl = widget.node.property(name);
    if (decl == nullptr) return {};
    widget.used.insert(name);
    const auto* call = std::get_if<CallExpr>(&decl->value->node);
    const auto* kind = call != nullptr ? std::get_if<NameExpr>(&call->callee->node) : nullptr;
    const bool isLine = kind != nullptr && kind->parts.front() == "line";
    if (call == nullptr || kind == nullptr || call->arguments.size() != 2 ||
        (!isLine && kind->parts.front() != "fancy")) {
        context_.diagnostics.error(decl->value->span, "this is no border",
                                   "write  line(COLOUR, WIDTH)  or  fancy(COLOUR, Icons.NAME)");
        return {};
    }
    const ValuePtr color = context_.resolver.value(call->arguments[0], Type::Color);
    const auto second = context_.resolver.constant(call->arguments[1], isLine ? Type::Int : Type::Image);
    if (color == nullptr || !second) return {};
    const std::string initial = color->constant() != nullptr ? color->constant()->code : "0";
    const std::string cls = isLine ? "Engine::LineBorder" : "Engine::FancyBorder";
    const std::string address = unit_.add(cls, isLine ? "lineBorders" : "fancyBorders",
                                          cls + "(" + initial + (isLine ? ", 0, " : ", ") + second->code + ")");
    unit_.borders.push_back("{" + address + ", " + widget.address + "}");
    if (color->constant() == nullptr) {
        const PropertySchema schema{"color", Type::Color, {}, "setColor", "Engine::Border", {}, {}};
        property(schema, {{"color", decl->name.span}, call->arguments[0]}, address,
                 widget.path + "." + std::string(name));
    }
    return address;
}

// Arguments behind the record, by class.

std::string WidgetLowering::arguments(Widget& widget) {
    if (widget.schema.name == "Group") return groupArguments(widget);
    if (widget.schema.name == "Label") return labelArguments(widget);
    if (widget.schema.name == "Icon") return iconArguments(widget);
    if (widget.schema.name == "Level") return levelArguments(widget);
    if (widget.schema.name == "ScaleContainer") return scaleContainerArguments(widget);
    if (widget.schema.name == "PinchScaleWidget") return pinchArguments(widget);
    return {};
}

std::string WidgetLowering::word(Widget& widget, std::string_view name) {
    const auto schema = std::find_if(widget.schema.words.begin(), widget.schema.words.end(),
                                     [&](const WordSchema& one) { return one.name == name; });
    const PropertyDecl* decl = widget.node.property(name);
    if (decl == nullptr) return {};
    widget.used.insert(name);
    const auto* given = std::get_if<NameExpr>(&decl->value->node);
    const std::string written = given != nullptr ? given->parts.front() : std::string(decl->value->span.text());
    std::vector<std::string_view> known;
    std::string list;
    for (const auto& [source, code] : schema->words) {
        if (written == source) return std::string(schema->enumeration) + "::" + std::string(code);
        known.push_back(source);
        list += (list.empty() ? "" : ", ") + std::string(source);
    }
    const std::string guess = didYouMean(written, known);
    context_.diagnostics.error(decl->value->span, "'" + std::string(name) + "' cannot be '" + written + "'",
                               guess.empty() ? "it is one of " + list : guess);
    return {};
}

std::string WidgetLowering::argument(Widget& widget, std::string_view name, const std::string& fallback) {
    const auto schema = std::find_if(widget.schema.properties.begin(), widget.schema.properties.end(),
                                     [&](const auto& one) { return one.name == name; });
    const PropertyDecl* decl = widget.node.property(name);
    if (decl == nullptr) return fallback;
    widget.used.insert(name);
    const std::string code = property(*schema, *decl, widget.address, widget.path);
    return code.empty() ? fallback : code;
}

std::string WidgetLowering::groupArguments(Widget& widget) {
    const std::string layout = word(widget, "layout");
    const std::string reacts = word(widget, "reacts");
    std::string result = (layout.empty() ? "Engine::Layout::Free" : layout) + ", " + children(widget.node) + ", " +
                         (reacts.empty() ? "Engine::Group::Reacts::Always" : reacts);
    if (const PropertyDecl* decl = widget.node.property("fallbackFocus")) {
        widget.used.insert("fallbackFocus");
        const ObjectNode* target = context_.findWidget(decl->value, &node_);
        if (target != nullptr && context_.widgetAddresses.contains(target))
            result += ", " + context_.widgetAddresses[target];
    }
    return result;
}

std::string WidgetLowering::labelArguments(Widget& widget) {
    const std::string ellipsis = word(widget, "ellipsis");
    const std::string letters = word(widget, "case");
    const std::string autoHeight = word(widget, "autoHeight");
    widget.used.insert("fit");
    std::string text = "{}, nullptr";
    if (const PropertyDecl* decl = widget.node.property("text")) {
        widget.used.insert("text");
        text = content(widget, *decl);
    }
    return text + ", " + (ellipsis.empty() ? "Engine::Ellipsis::None" : ellipsis) + ", " +
           (letters.empty() ? "Engine::CaseMode::AsWritten" : letters) + ", " +
           (autoHeight.empty() ? "Engine::Label::AutoHeight::Off" : autoHeight);
}

std::string WidgetLowering::iconArguments(Widget& widget) {
    const std::string image = argument(widget, "image", "nullptr");
    const std::string tiling = word(widget, "tiling");
    const std::string slicing = word(widget, "slicing");
    return image + ", " + (tiling.empty() ? "Engine::Icon::Tiling::Off" : tiling) + ", " +
           (slicing.empty() ? "Engine::Icon::Slicing::Off" : slicing);
}

std::string WidgetLowering::levelArguments(Widget& widget) {
    const std::string direction = word(widget, "direction");
    const std::string mode = word(widget, "mode");
    const std::string thickness = argument(widget, "thickness", "1");
    const std::string steps = argument(widget, "steps", "1.0f");
    const std::string image = argument(widget, "image", "nullptr");
    const std::string minimum = argument(widget, "minimum", "0.0f");
    const std::string maximum = argument(widget, "maximum", "1000.0f");
    std::string value = "0.0f";
    if (const PropertyDecl* decl = widget.node.property("value")) {
        widget.used.insert("value");
        if (std::holds_alternative<NameExpr>(decl->value->node) || std::holds_alternative<IndexExpr>(decl->value->node))
            levelValue(widget);
        else if (const auto constant = context_.resolver.constant(decl->value, Type::Float))
            value = constant->code;
    }
    return (direction.empty() ? "Engine::Level::Direction::Right" : direction) + ", " +
           (mode.empty() ? "Engine::Level::Mode::Bar" : mode) + ", " + thickness + ", " + steps + ", " + image + ", " +
           value + ", " + minimum + ", " + maximum;
}

/// A level follows a variable, and its limits too unless the source gives them.
void WidgetLowering::levelValue(Widget& widget) {
    const PropertyDecl& decl = *widget.node.property("value");
    const VariableInfo* variable = context_.resolver.variable(decl.value);
    if (variable == nullptr) return;
    if (variable->kind != VariableKind::Int && variable->kind != VariableKind::Float) {
        context_.diagnostics.error(decl.value->span, "a level shows a number or a float");
        return;
    }
    const bool ownLimits = widget.node.property("minimum") != nullptr || widget.node.property("maximum") != nullptr;
    const bool isInt = variable->kind == VariableKind::Int;
    const std::string cls = std::string("Engine::MinMaxValueModifier<Engine::Level, ") + (isInt ? "int>" : "float>");
    const std::string observer = unit_.add(cls, isInt ? "levelNumbers" : "levelFloats",
                                           cls + "(" + widget.address + ", " + variable->address +
                                               ", Engine::Limits::" + (ownLimits ? "Keep" : "FollowVariable") + ")");
    const std::string what = widget.path + ".value";
    context_.explanation.rules.push_back(
        {what, decl.value->span,
         std::make_shared<Value>(Value{isInt ? Type::Int : Type::Float, decl.value->span, VariableValue{variable}})});
    context_.observe(variable, observer, what);
}

// Contents of labels.

std::string WidgetLowering::content(Widget& widget, const PropertyDecl& decl) {
    const ValuePtr value = context_.resolver.content(decl.value);
    if (value == nullptr) return "{}, nullptr";
    context_.useAll(*value);
    const std::string what = widget.path + ".text";
    context_.explanation.rules.push_back({what, decl.value->span, value});
    context_.explanation.shown.push_back({&widget.node, widget.path, value});
    if (const auto* constant = value->constant()) {
        if (value->type == Type::String) return "{}, " + constant->code;
        if (language() != nullptr) context_.observe(language(), widget.address, what);
        return constant->code + ", nullptr";
    }
    if (const auto* filled = std::get_if<FilledValue>(&value->node)) {
        const auto* text = filled->text->constant();
        const std::string modifier =
            concat(widget, text != nullptr ? text->code : "{}", filled->parts, decl.value->span);
        if (text == nullptr) {
            const PropertySchema schema{"template", Type::Text, {}, "setTemplate", "Engine::ConcatModifier", {}, {}};
            if (const auto* call = std::get_if<CallExpr>(&decl.value->node))
                property(schema, {{"template", call->callee->span}, call->callee}, modifier, what);
        }
        return "{}, nullptr";
    }
    if (value->type == Type::String) {
        concat(widget, "Engine::TextId{1}", {value}, decl.value->span);  // the text "%0"
        return "{}, nullptr";
    }
    const PropertySchema schema{"text", Type::Text, {}, "setTextId", "Engine::Label", {}, {}};
    property(schema, decl, widget.address, widget.path);
    if (language() != nullptr) context_.observe(language(), widget.address, what);
    return "{}, nullptr";
}

std::string WidgetLowering::concat(const Widget& widget, const std::string& templateId,
                                   const std::vector<ValuePtr>& parts, Span span) {
    const std::string what = widget.path + ".text";
    if (parts.size() > 10) context_.diagnostics.error(span, "a text has ten holes at most", "the holes are %0 to %9");
    std::vector<std::string> providers;
    for (const auto& part : parts) providers.push_back(stringProvider(*part, what));
    const std::string list = unit_.table("Engine::StringProviderBase* const", "partLists", providers);
    const std::string address =
        unit_.add("Engine::ConcatModifier", "concats",
                  "Engine::ConcatModifier(" + list + ", " + templateId + ", " + widget.address + ")");
    unit_.concatModifiers.push_back(address);
    if (language() != nullptr) context_.observe(language(), address, what);
    return address;
}

std::string WidgetLowering::stringProvider(const Value& part, const std::string& what) {
    FormattedValue plain{FormattedValue::Kind::Printf, std::make_shared<Value>(part), "%s", {}};
    const auto* formatted = std::get_if<FormattedValue>(&part.node);
    return formatProvider(formatted != nullptr ? *formatted : plain, what);
}

std::string WidgetLowering::formatProvider(const FormattedValue& node, const std::string& what) {
    const Type type = node.source->type;
    const std::string source = values_.provider(*node.source);
    const std::string filter = node.match.empty() ? "nullptr" : regex(node.match);
    const std::string storage = unit_.storage("char", "texts", type == Type::String ? longText : shortText);
    const std::string format = cppString(node.format);
    std::string address;
    if (node.kind == FormattedValue::Kind::Time) {
        address = unit_.add("Engine::TimeStringProvider", "timeStrings",
                            "Engine::TimeStringProvider(" + format + ", " + source + ", " + storage + ")");
    } else if (node.kind == FormattedValue::Kind::Metres || node.kind == FormattedValue::Kind::Feet) {
        const std::string system = node.kind == FormattedValue::Kind::Feet ? "Feet" : "Metres";
        address = unit_.add("Engine::LengthStringProvider", "lengthStrings",
                            "Engine::LengthStringProvider(Engine::LengthStringProvider::System::" + system + ", " +
                                source + ", " + storage + ")");
    } else if (node.kind == FormattedValue::Kind::Hundredths) {
        address = unit_.add("Engine::HundredthsStringProvider", "hundredthsStrings",
                            "Engine::HundredthsStringProvider(" + source + ", " + storage + ")");
    } else {
        const std::string cls = "Engine::StringProvider<" + std::string(cppType(type)) + ">";
        address = unit_.add(cls, arrayName(type, "strings"),
                            cls + "(" + format + ", " + source + ", " + filter + ", " + storage + ")");
    }
    auto read = readVariables(*node.source);
    if (read.empty()) unit_.stringProviders.push_back(address);
    const bool translated = std::holds_alternative<EnumTextValue>(node.source->node);
    if (translated && language() != nullptr) read.push_back(language());
    context_.observe(read, address, what);
    return address;
}

std::string WidgetLowering::regex(const std::string& expression) {
    auto& address = context_.regexAddresses[expression];
    if (address.empty()) {
        address = context_.rules().add("Engine::RegexFilter", "filters",
                                       "Engine::RegexFilter(" + cppString(expression) + ")");
        context_.rules().regexFilters.push_back(address);
    }
    return address;
}

}  // namespace Modelc
