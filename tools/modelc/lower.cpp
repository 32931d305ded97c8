#include "tools/modelc/lower.h"

#include <algorithm>

#include "tools/modelc/cppliteral.h"
#include "tools/modelc/edits.h"
#include "tools/modelc/loweractions.h"
#include "tools/modelc/lowercontext.h"
#include "tools/modelc/lowerwidgets.h"
#include "tools/modelc/staticvalue.h"

namespace Modelc {

namespace {

/// Lowers one page or container.
class UnitLowering {
  public:
    UnitLowering(LoweringContext& context, LoweredUnit& unit, const UnitNode& node)
        : context_(context),
          unit_(unit),
          node_(node),
          values_(unit, context.rules(), context.ruleAddresses),
          widgets_(context, unit, node),
          actions_(context, unit, node) {}

    /// Only places, so that units can name each other.
    void reserve() {
        if (isPage())
            unit_.reserve("Engine::Page", "page");
        else
            unit_.reserve("Engine::BehaviorContainer", "container");
        widgets_.reserve(node_.root, node_.name.text);
    }

    void run() {
        if (isPage())
            widgets_.describe(node_.root);
        else
            refuseWidgets();
        const std::string behavior = reactable();
        triggers();
        isPage() ? page(behavior) : container(behavior);
    }

  private:
    bool isPage() const { return node_.kind == UnitNode::Kind::Page; }
    std::string self() const { return "&" + node_.name.text + (isPage() ? "::page[0]" : "::container[0]"); }

    void refuseWidgets() {
        for (const auto& child : node_.root.children)
            if (child->type.text != "UserButton")
                context_.diagnostics.error(
                    child->type.span, "a container shows nothing",
                    "widgets belong into a page; a container holds reactions, timers and user actions");
    }

    // Behaviour.

    /// Reactions and timers with their widgets, in the order of the source.
    std::string reactable() {
        std::vector<std::string> reactions, reactionWidgets, timers, timerWidgets;
        for (const auto& owned : node_.reactions) {
            reactions.push_back(reaction(owned, static_cast<int>(reactions.size())));
            reactionWidgets.push_back(widgetOf(owned.owner));
        }
        for (const auto& owned : node_.timers) {
            timers.push_back(timer(owned, static_cast<int>(timers.size())));
            timerWidgets.push_back(widgetOf(owned.owner));
        }
        return "{.reactions = " + unit_.table("Engine::Reaction* const", "reactionList", reactions) +
               ", .reactionWidgets = " + unit_.table("Engine::Widget* const", "reactionWidgets", reactionWidgets) +
               ", .timers = " + unit_.table("Engine::Timer* const", "timerList", timers) +
               ", .timerWidgets = " + unit_.table("Engine::Widget* const", "timerWidgets", timerWidgets) + "}";
    }

    std::string widgetOf(const ObjectNode* owner) {
        const auto found = owner != nullptr ? context_.widgetAddresses.find(owner) : context_.widgetAddresses.end();
        return found != context_.widgetAddresses.end() ? found->second : "nullptr";
    }

    std::string placeOf(const ObjectNode* owner, const char* kind, int number) {
        const auto found = owner != nullptr ? context_.widgetPaths.find(owner) : context_.widgetPaths.end();
        return (found != context_.widgetPaths.end() ? found->second : node_.name.text) + "." + kind +
               std::to_string(number);
    }

    std::string reaction(const Owned<ReactionDecl>& owned, int number) {
        const ExpansionScope scope(context_.diagnostics, owned.expansion);
        const std::string place = placeOf(owned.owner, "reaction", number);
        const std::string matcher = actions_.matcher(owned.decl.events, place, owned.span);
        noteTouch(owned, place);
        const std::string list = actions_.table(owned.decl.actions, place);
        const std::string address = unit_.add(
            "Engine::Reaction", "reactions",
            "Engine::Reaction(" + list + ", " + matcher + ", " + widgetOf(owned.owner) + ", " + cppString(place) + ")");
        drive(owned.decl.condition, "Engine::Reaction", address, place);
        return address;
    }

    void noteTouch(const Owned<ReactionDecl>& owned, const std::string& place) {
        static constexpr unsigned touchStart = 5, touchEnd = 6, touched = 7;
        const auto& hears = context_.explanation.hears;
        for (auto hear = hears.rbegin(); owned.owner != nullptr && hear != hears.rend() && hear->place == place; ++hear)
            if (hear->event == touchStart || hear->event == touchEnd || hear->event == touched) {
                context_.explanation.touched.push_back({owned.owner, place, owned.span});
                return;
            }
    }

    std::string timer(const Owned<TimerDecl>& owned, int number) {
        const ExpansionScope scope(context_.diagnostics, owned.expansion);
        const TimerDecl& decl = owned.decl;
        const std::string place = placeOf(owned.owner, "timer", number);
        const auto period = staticNumber(decl.period, context_.diagnostics);
        const auto times = staticNumber(decl.times, context_.diagnostics);
        if (period && *period < 1) context_.diagnostics.error(decl.period->span, "a timer's period is at least 1 ms");
        if (times && *times < -1)
            context_.diagnostics.error(decl.times->span, "a timer ticks once, a number of times, or for ever");
        if (times && *times <= 0 && !decl.finish.empty())
            context_.diagnostics.warning(owned.span, "what stands behind 'finally' never runs",
                                         "only a timer with  times N  comes to an end");
        const std::string record = "{.interval = " + std::to_string(period.value_or(1)) +
                                   ", .repeat = " + std::to_string(times.value_or(0)) +
                                   ", .startMatcher = " + actions_.matcher(decl.starts, place, owned.span) +
                                   ", .stopMatcher = " + actions_.matcher(decl.stops, place, owned.span) +
                                   ", .tickActions = " + actions_.table(decl.ticks, place) +
                                   ", .finishActions = " + actions_.table(decl.finish, place + ".finally") +
                                   ", .name = " + cppString(place) + "}";
        const std::string address = unit_.add("Engine::Timer", "timers", "Engine::Timer(" + record + ")");
        drive(decl.condition, "Engine::Timer", address, place);
        if (!decl.name.empty() &&
            !context_.namedObjects
                 .try_emplace(node_.name.text + "." + decl.name, LoweringContext::NamedObject{"Engine::Timer", address})
                 .second)
            context_.diagnostics.error(owned.span, "the name '" + decl.name + "' is taken by another action or timer",
                                       "give each a name of its own");
        return address;
    }

    void drive(const ExprPtr& condition, const std::string& target, const std::string& address,
               const std::string& place) {
        if (condition == nullptr) return;
        const PropertySchema schema{"enabled", Type::Bool, {}, "setEnabled", target, {}, {}};
        const std::string constant =
            widgets_.property(schema, {{"enabled", condition->span}, condition}, address, place);
        if (!constant.empty())
            context_.diagnostics.warning(condition->span, "this condition never changes",
                                         "leave it out, or decide it with a static  if  around the declaration");
    }

    void triggers() {
        int number = 0;
        for (const auto& owned : node_.triggers) {
            const ExpansionScope scope(context_.diagnostics, owned.expansion);
            const std::string place = placeOf(owned.owner, "trigger", number++);
            const auto event = context_.resolver.event(owned.decl.event);
            if (event) context_.explanation.posts.push_back({*event, place});
            if (owned.decl.when == TriggerDecl::When::Change)
                changeTrigger(owned.decl, event.value_or(0), place);
            else
                conditionTrigger(owned.decl, event.value_or(0), place);
        }
    }

    void conditionTrigger(const TriggerDecl& decl, unsigned event, const std::string& place) {
        const ValuePtr value = context_.resolver.condition(decl.condition);
        if (value == nullptr) return;
        context_.explanation.rules.push_back({place + ".when", decl.condition->span, value});
        const std::string fire = decl.when == TriggerDecl::When::Every ? "OnEveryTrueUpdate" : "OnRisingEdge";
        addTrigger(values_.condition(*value), event, fire, readVariables(*value), place);
    }

    void changeTrigger(const TriggerDecl& decl, unsigned event, const std::string& place) {
        const VariableInfo* variable = context_.resolver.variable(decl.condition);
        if (variable == nullptr) return;
        std::string type = "int";
        if (variable->kind == VariableKind::Flag) type = "bool";
        if (variable->kind == VariableKind::String) type = "const char*";
        if (variable->kind == VariableKind::Float || variable->kind == VariableKind::Table) {
            context_.diagnostics.error(
                decl.condition->span, "a change of '" + variable->name + "' cannot be watched for",
                "flags, numbers, enums and strings can; for the others name a condition with  when");
            return;
        }
        std::string threshold;
        if (decl.threshold != nullptr)
            if (const auto amount = staticNumber(decl.threshold, context_.diagnostics))
                threshold = ", " + std::to_string(*amount);
        const std::string cls = "Engine::ComparePrevious<" + type + ">";
        const std::string array = type == "int"    ? "previousNumbers"
                                  : type == "bool" ? "previousFlags"
                                                   : "previousStrings";
        const std::string condition = unit_.add(cls, array, cls + "(" + variable->address + threshold + ")");
        addTrigger(condition, event, "OnEveryTrueUpdate", {variable}, place);
    }

    void addTrigger(const std::string& condition, unsigned event, const std::string& fire,
                    const std::vector<const VariableInfo*>& read, const std::string& place) {
        const std::string address = unit_.add("Engine::EventTrigger", "triggers",
                                              "Engine::EventTrigger(" + condition + ", " + std::to_string(event) +
                                                  "u, Engine::EventTrigger::Fire::" + fire + ")");
        context_.observe(read, address, place);
    }

    // Pages.

    void page(const std::string& behavior) {
        const std::string name = node_.name.text;
        std::string title = cppString(name);
        std::vector<std::string_view> used = {"title"};
        if (const PropertyDecl* decl = node_.root.property("title"))
            if (const auto constant = context_.resolver.constant(decl->value, Type::String)) title = constant->code;
        std::string fields;
        for (const auto& schema : pageProperties()) {
            const PropertyDecl* decl = node_.root.property(schema.name);
            if (decl == nullptr) continue;
            used.push_back(schema.name);
            const std::string code = widgets_.property(schema, *decl, self(), name);
            if (!code.empty()) fields += ", ." + std::string(schema.field) + " = " + code;
        }
        unit_.describe(self(), "Engine::Page({.name = " + cppString(name) + ", .title = " + title + fields +
                                   ", .children = " + widgets_.children(node_.root) + ", .behavior = " + behavior +
                                   "})");
        unit_.parents.insert(unit_.parents.begin(), self());
        reportUnused(used, "page");
    }

    void reportUnused(const std::vector<std::string_view>& used, const std::string& kind) {
        for (const auto& decl : node_.root.properties) {
            if (std::find(used.begin(), used.end(), decl.name.text) != used.end()) continue;
            std::vector<std::string_view> known;
            for (const auto& one : pageProperties()) known.push_back(one.name);
            context_.diagnostics.error(decl.name.span, "a " + kind + " has no property '" + decl.name.text + "'",
                                       didYouMean(decl.name.text, known));
        }
    }

    // Containers.

    void container(const std::string& behavior) {
        std::vector<std::string> userActions;
        for (const auto& owned : node_.userActions) userAction(owned, userActions);
        std::vector<std::string> buttons;
        for (const auto& child : node_.root.children)
            if (child->type.text == "UserButton") buttons.push_back(userButton(*child));
        if (const PropertyDecl* decl = node_.root.property("enabled"))
            drive(decl->value, "Engine::BehaviorContainer", self(), node_.name.text);
        unit_.describe(self(), "Engine::BehaviorContainer(" + behavior + ", " +
                                   unit_.table("Engine::UserAction* const", "userActionList", userActions) + ", " +
                                   unit_.table("Engine::UserButton* const", "userButtonList", buttons) + ", " +
                                   cppString(node_.name.text) + ")");
        reportUnused({"enabled"}, "container");
    }

    void userAction(const Owned<UserActionDecl>& owned, std::vector<std::string>& list) {
        const ExpansionScope scope(context_.diagnostics, owned.expansion);
        const UserActionDecl& decl = owned.decl;
        const std::string place = node_.name.text + "." + decl.name.text;
        std::string active = "false";
        if (decl.active != nullptr)
            if (const auto constant = context_.resolver.constant(decl.active, Type::Bool)) active = constant->code;
        const std::string address =
            unit_.add("Engine::UserAction", "userActions",
                      "Engine::UserAction({.pressActions = " + actions_.table(decl.press, place + ".press") +
                          ", .releaseActions = " + actions_.table(decl.release, place + ".release") +
                          ", .selectActions = " + actions_.table(decl.select, place + ".select") +
                          ", .deselectActions = " + actions_.table(decl.deselect, place + ".deselect") +
                          ", .activeValue = " + active + "})");
        drive(decl.enabled, "Engine::UserAction", address, place);
        std::size_t index = list.size();
        if (decl.index != nullptr)
            if (const auto number = staticNumber(decl.index, context_.diagnostics);
                number && *number >= 0 && *number < 1000)
                index = static_cast<std::size_t>(*number);
        if (index < list.size() && list[index] != "nullptr") {
            context_.diagnostics.error(decl.name.span,
                                       "the number " + std::to_string(index) + " is taken by another user action",
                                       "give each a number of its own");
            return;
        }
        if (index >= list.size()) list.resize(index + 1, "nullptr");
        list[index] = address;
    }

    std::string userButton(const ObjectNode& object) {
        const ExpansionScope scope(context_.diagnostics, object.expansion);
        const std::string place = node_.name.text + "." + object.name.text;
        std::string fields;
        for (const auto& [name, field] :
             {std::pair<std::string_view, std::string>{"press", ".pressMatcher"}, {"release", ".releaseMatcher"}})
            if (const PropertyDecl* decl = object.property(name))
                fields += (fields.empty() ? "" : ", ") + field + " = " +
                          actions_.matcher({decl->value}, place, decl->name.span);
        const PropertyDecl* index = object.property("index");
        if (index == nullptr) {
            context_.diagnostics.error(object.type.span, "which function does this button have?",
                                       "add  index: VarUserButton...");
            return "nullptr";
        }
        const ValuePtr value = context_.resolver.value(index->value, Type::Int);
        if (value == nullptr) return "nullptr";
        fields += (fields.empty() ? "" : ", ") + std::string(".indexProvider = ") + values_.provider(*value);
        if (const PropertyDecl* active = object.property("active"))
            if (const VariableInfo* variable = context_.resolver.variable(active->value)) {
                context_.use(variable);
                fields += ", .activeVariable = " + variable->address;
            }
        const std::string address = unit_.add("Engine::UserButton", "userButtons",
                                              "Engine::UserButton({" + fields + ", .container = " + self() + "})");
        context_.explanation.rules.push_back({place + ".index", index->value->span, value});
        context_.observe(readVariables(*value), address, place + ".index");
        return address;
    }

    LoweringContext& context_;
    LoweredUnit& unit_;
    const UnitNode& node_;
    ValueLowering values_;
    WidgetLowering widgets_;
    ActionLowering actions_;
};

/// The action or timer of that name; null when there is none.
const LoweringContext::NamedObject* namedObject(const LoweringContext& context, const NameExpr* name) {
    if (name == nullptr || name->parts.size() != 2) return nullptr;
    const auto found = context.namedObjects.find(name->parts[0] + "." + name->parts[1]);
    return found != context.namedObjects.end() ? &found->second : nullptr;
}

void exports(LoweringContext& context) {
    for (const auto& decl : context.model.exports) {
        Lowered::Export result{decl.name.text, "Engine::Widget", {}, decl.isList};
        for (const auto& target : decl.targets) {
            const auto* name = std::get_if<NameExpr>(&target->node);
            const UnitNode* unit =
                name != nullptr && name->parts.size() == 1 ? context.model.unit(name->parts.front()) : nullptr;
            if (unit != nullptr) {
                const bool page = unit->kind == UnitNode::Kind::Page;
                result.type = page ? "Engine::Page" : "Engine::BehaviorContainer";
                result.addresses.push_back("&" + unit->name.text + (page ? "::page[0]" : "::container[0]"));
                continue;
            }
            if (const auto* object = namedObject(context, name)) {
                result.type = object->type;
                result.addresses.push_back(object->address);
                continue;
            }
            const ObjectNode* widget = context.findWidget(target, nullptr);
            if (widget == nullptr || !context.widgetAddresses.contains(widget)) continue;
            if (decl.targets.size() == 1 || result.addresses.empty())
                result.type = "Engine::" + widget->type.text;
            else if (result.type != "Engine::" + widget->type.text)
                result.type = "Engine::Widget";
            result.addresses.push_back(context.widgetAddresses[widget]);
        }
        context.lowered.exports.push_back(std::move(result));
    }
}

void registrations(LoweringContext& context) {
    for (const auto& decl : context.model.registrations)
        for (const auto& name : decl.names) {
            const auto* given = std::get_if<NameExpr>(&name->node);
            const UnitNode* unit = given != nullptr ? context.model.unit(given->parts.front()) : nullptr;
            const auto wanted =
                decl.what == RegisterDecl::What::Containers ? UnitNode::Kind::Container : UnitNode::Kind::Page;
            if (unit == nullptr || unit->kind != wanted) {
                std::vector<std::string_view> known;
                for (const auto& one : context.model.units)
                    if (one->kind == wanted) known.push_back(one->name.text);
                const std::string what = wanted == UnitNode::Kind::Container ? "container" : "page";
                context.diagnostics.error(name->span,
                                          "there is no " + what + " '" + std::string(name->span.text()) + "'",
                                          didYouMean(name->span.text(), known));
                continue;
            }
            if (decl.what == RegisterDecl::What::Containers)
                context.lowered.containers.push_back("&" + unit->name.text + "::container[0]");
            else if (decl.what == RegisterDecl::What::Overlays)
                context.lowered.overlays.push_back("&" + unit->name.text + "::page[0]");
            else
                context.lowered.start = "&" + unit->name.text + "::page[0]";
        }
}

void collectEdits(LoweringContext& context) {
    for (const auto& table : context.model.edits)
        for (const auto& row : table.rows) {
            context.edits[row.name.text] = &row;
            context.editTables[row.name.text] = &table;
        }
}

}  // namespace

Lowered lower(const ModelTree& model, const Names& names, Diagnostics& diagnostics, Explanation& explanation) {
    Lowered lowered;
    lowered.units.push_back(std::make_unique<LoweredUnit>("SharedRules"));
    LoweringContext context{model, names, diagnostics, lowered, explanation, Resolver(model, names, diagnostics),
                            {},    {},    {},          {},      {},          {}};
    if (!model.complete) return lowered;
    if (model.night != nullptr) context.resolver.condition(model.night);
    collectEdits(context);

    std::vector<UnitLowering> parts;
    parts.reserve(model.units.size());
    for (const auto& node : model.units) {
        lowered.units.push_back(std::make_unique<LoweredUnit>(node->name.text, node->span.file));
        parts.emplace_back(context, *lowered.units.back(), *node);
        parts.back().reserve();
    }
    for (auto& part : parts) part.run();
    exports(context);
    registrations(context);
    return lowered;
}

}  // namespace Modelc
