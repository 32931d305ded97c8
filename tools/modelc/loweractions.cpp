#include "tools/modelc/loweractions.h"

#include <array>

#include "tools/modelc/cppliteral.h"
#include "tools/modelc/staticvalue.h"

namespace Modelc {

namespace {

constexpr std::array<std::string_view, 12> verbs = {"set",  "toggle", "increase", "decrease", "fire",  "navigate",
                                                    "back", "clear",  "focus",    "edit",     "first", "all"};

std::string kindName(VariableKind kind) {
    switch (kind) {
        case VariableKind::Flag: return "Flag";
        case VariableKind::Enum: return "Enum";
        case VariableKind::Float: return "Float";
        case VariableKind::String: return "String";
        default: return "Number";
    }
}

Type valueType(VariableKind kind) {
    switch (kind) {
        case VariableKind::Flag: return Type::Bool;
        case VariableKind::Float: return Type::Float;
        case VariableKind::String: return Type::String;
        default: return Type::Int;
    }
}

/// Name and flags behind an action's own arguments.
std::string tailOf(const ActionStmt& action, const char* more = nullptr) {
    std::string flags = "Engine::Action::Enabled";
    if (action.wrap) flags += " | Engine::Action::Wrap";
    if (more != nullptr) flags += std::string(" | ") + more;
    return action.wrap || more != nullptr ? ", nullptr, " + flags + ")" : ")";
}

}  // namespace

std::string engineVariable(VariableKind kind) {
    switch (kind) {
        case VariableKind::Flag: return "Engine::BoolVariable";
        case VariableKind::Enum: return "Engine::EnumVariable";
        case VariableKind::Float: return "Engine::ScalarVariable<float>";
        case VariableKind::String: return "Engine::StringVariable";
        default: return "Engine::ScalarVariable<int>";
    }
}

std::vector<std::string> ActionLowering::list(const std::vector<ActionPtr>& actions, const std::string& place) {
    std::vector<std::string> addresses;
    for (const auto& action : actions) add(*action, place, addresses);
    return addresses;
}

std::string ActionLowering::table(const std::vector<ActionPtr>& actions, const std::string& place) {
    return unit_.table("Engine::Action* const", "actionLists", list(actions, place));
}

std::string ActionLowering::matcher(const std::vector<ExprPtr>& events, const std::string& place, Span span) {
    std::vector<std::string> ids;
    for (const auto& event : events) {
        const auto id = context_.resolver.event(event);
        if (!id) continue;
        ids.push_back(std::to_string(*id) + "u");
        context_.explanation.hears.push_back({*id, place, span});
    }
    if (ids.empty()) return "nullptr";
    if (ids.size() == 1)
        return unit_.intern("Engine::SingleEventMatcher", "matchers",
                            "Engine::SingleEventMatcher(" + ids.front() + ")");
    const std::string list = unit_.table("const Engine::EventId", "eventLists", ids);
    return unit_.intern("Engine::GroupEventMatcher", "groupMatchers", "Engine::GroupEventMatcher(" + list + ")");
}

void ActionLowering::add(const ActionStmt& action, const std::string& place, std::vector<std::string>& out) {
    if (action.verb == "edit") {
        edit(action, place, out);
        return;
    }
    const std::string address = single(action, place);
    if (address.empty()) return;
    drive(action, address, place);
    out.push_back(address);
}

std::string ActionLowering::single(const ActionStmt& action, const std::string& place) {
    const std::string tail = tailOf(action);
    if (!action.name.empty() && action.verb != "fire")
        context_.diagnostics.error(action.span, "only  fire  can have a name", "leave out  named " + action.name);
    if (action.verb == "set") return set(action, place, tail);
    if (action.verb == "increase" || action.verb == "decrease") return step(action, place, tail);
    if (action.verb == "toggle") return toggle(action, place, tail);
    if (action.verb == "fire") return fire(action, place, tail);
    if (action.verb == "navigate") return navigate(action, place, tail);
    if (action.verb == "back") return back(action);
    if (action.verb == "clearHistory")
        return object(action, "Engine::HistoryClear", "historyClears", "Engine::HistoryClear()");
    if (action.verb == "focus") return focus(action, tail);
    if (action.verb == "first" || action.verb == "all") return group(action, place);
    context_.diagnostics.error(action.verbSpan, "there is no action '" + action.verb + "'",
                               didYouMean(action.verb, std::vector<std::string_view>(verbs.begin(), verbs.end())));
    return {};
}

std::string ActionLowering::toggle(const ActionStmt& action, const std::string& place, const std::string& tail) {
    if (!operands(action, 1, 1, "toggle VarFlag")) return {};
    const VariableInfo* variable = written(action.operands[0], place);
    if (variable == nullptr) return {};
    if (variable->kind != VariableKind::Flag) {
        context_.diagnostics.error(action.operands[0]->span, "only a flag can be toggled", "use  set  or  increase");
        return {};
    }
    return object(action, "Engine::VarNegate", "negates", "Engine::VarNegate(" + variable->address + tail);
}

std::string ActionLowering::back(const ActionStmt& action) {
    context_.explanation.visits.push_back({node_.name.text, {}});
    return object(action, "Engine::HistoryGoBack", "goBacks", "Engine::HistoryGoBack()");
}

std::string ActionLowering::focus(const ActionStmt& action, const std::string& tail) {
    if (!operands(action, 1, 1, "focus WIDGET")) return {};
    const ObjectNode* widget = context_.findWidget(action.operands[0], &node_);
    if (widget == nullptr || !context_.widgetAddresses.contains(widget)) return {};
    return object(action, "Engine::WidgetSetFocus", "setFocuses",
                  "Engine::WidgetSetFocus(" + context_.widgetAddresses[widget] + tail);
}

std::string ActionLowering::fire(const ActionStmt& action, const std::string& place, const std::string& tail) {
    if (!action.name.empty()) return namedFire(action, tail, place);
    if (!operands(action, 1, 1, "fire Event_Name")) return {};
    const auto event = context_.resolver.event(action.operands[0]);
    if (!event) return {};
    context_.explanation.posts.push_back({*event, place});
    return object(action, "Engine::FireEvent", "fires", "Engine::FireEvent(" + std::to_string(*event) + "u" + tail);
}

/// A fire action that the program may change, and must fill in and enable when it names no event.
std::string ActionLowering::namedFire(const ActionStmt& action, const std::string& tail, const std::string& place) {
    if (!operands(action, 0, 1, "fire Event_Name named NAME,  or  fire named NAME")) return {};
    std::string arguments = "0u, nullptr, 0)";
    if (!action.operands.empty()) {
        const auto event = context_.resolver.event(action.operands[0]);
        if (!event) return {};
        context_.explanation.posts.push_back({*event, place});
        arguments = std::to_string(*event) + "u" + tail;
    }
    const std::string address = unit_.add("Engine::FireEvent", "fires", "Engine::FireEvent(" + arguments);
    if (!context_.namedObjects
             .try_emplace(node_.name.text + "." + action.name,
                          LoweringContext::NamedObject{"Engine::FireEvent", address})
             .second)
        context_.diagnostics.error(action.span, "the name '" + action.name + "' is taken by another action or timer",
                                   "give each a name of its own");
    return address;
}

/// An action that no condition drives is the same wherever it stands.
std::string ActionLowering::object(const ActionStmt& action, std::string_view type, std::string_view array,
                                   std::string initialiser) {
    return action.condition != nullptr ? unit_.add(type, array, std::move(initialiser))
                                       : unit_.intern(type, array, std::move(initialiser));
}

bool ActionLowering::operands(const ActionStmt& action, std::size_t least, std::size_t most, const char* usage) {
    if (action.operands.size() >= least && action.operands.size() <= most) return true;
    context_.diagnostics.error(action.span, "this action is not complete or says too much",
                               std::string("write  ") + usage);
    return false;
}

const VariableInfo* ActionLowering::written(const ExprPtr& expr, const std::string& place) {
    const VariableInfo* variable = context_.resolver.variable(expr);
    if (variable == nullptr) return nullptr;
    context_.use(variable);
    context_.explanation.writes.push_back({variable->name, place, expr->span});
    if (variable->kind != VariableKind::Table) return variable;
    context_.diagnostics.error(expr->span, "a table cannot be written as a whole", "name one of its cells");
    return nullptr;
}

std::string ActionLowering::set(const ActionStmt& action, const std::string& place, const std::string& tail) {
    if (!operands(action, 2, 2, "set VarName = VALUE")) return {};
    const VariableInfo* variable = written(action.operands[0], place);
    if (variable == nullptr) return {};
    const ExprPtr& source = action.operands[1];
    const std::string cls = engineVariable(variable->kind);
    const auto* name = std::get_if<NameExpr>(&source->node);
    const bool isCell = std::holds_alternative<IndexExpr>(source->node);
    if (isCell || (name != nullptr && name->parts.front().starts_with("Var"))) {
        const VariableInfo* from = context_.resolver.variable(source);
        if (from == nullptr) return {};
        context_.use(from);
        if (from->kind != variable->kind) {
            context_.diagnostics.error(source->span,
                                       "'" + from->name + "' and '" + variable->name + "' are of different kinds",
                                       "only like can be copied");
            return {};
        }
        return object(action, "Engine::VarSetToVariable<" + cls + ">", "copy" + kindName(variable->kind),
                      "Engine::VarSetToVariable<" + cls + ">(" + variable->address + ", " + from->address + tail);
    }
    if (std::holds_alternative<ChooseExpr>(source->node) || std::holds_alternative<NightDayExpr>(source->node))
        return setToRule(action, *variable, tail, place);
    const auto value = context_.resolver.constantFor(*variable, source);
    if (!value) return {};
    return object(action, "Engine::VarSetToValue<" + cls + ">", "set" + kindName(variable->kind),
                  "Engine::VarSetToValue<" + cls + ">(" + value->code + ", " + variable->address + tail);
}

/// The value to be written follows a rule: a modifier keeps it ready.
std::string ActionLowering::setToRule(const ActionStmt& action, const VariableInfo& variable, const std::string& tail,
                                      const std::string& place) {
    if (variable.kind == VariableKind::String) {
        context_.diagnostics.error(action.operands[1]->span, "a string cannot be chosen here",
                                   "write one action a text, each with its own  if");
        return {};
    }
    const Type type = valueType(variable.kind);
    const ValuePtr value = context_.resolver.value(action.operands[1], type);
    if (value == nullptr) return {};
    context_.useAll(*value);
    const std::string cls = "Engine::VarSetToValue<" + engineVariable(variable.kind) + ">";
    const std::string address =
        unit_.add(cls, "set" + kindName(variable.kind), cls + "({}, " + variable.address + tail);
    const std::string modifier = "Engine::Modifier<" + cls + ", " + std::string(cppType(type)) + ">";
    const std::string observer =
        unit_.add(modifier, "setValues" + kindName(variable.kind),
                  modifier + "(" + address + ", &" + cls + "::setValue, " + values_.provider(*value) + ")");
    context_.explanation.rules.push_back({place + ".set " + variable.name, action.span, value});
    context_.observe(readVariables(*value), observer, place + ".set " + variable.name);
    return address;
}

std::string ActionLowering::step(const ActionStmt& action, const std::string& place, const std::string& tail) {
    if (!operands(action, 1, 2, "increase VarName by STEP [wrap]")) return {};
    const VariableInfo* variable = written(action.operands[0], place);
    if (variable == nullptr) return {};
    if (variable->kind != VariableKind::Int && variable->kind != VariableKind::Float) {
        context_.diagnostics.error(action.operands[0]->span, "only numbers and floats have steps",
                                   "give the value with  set");
        return {};
    }
    std::optional<ConstantValue> amount = ConstantValue{"1", "1"};
    if (action.operands.size() == 2) amount = context_.resolver.constantFor(*variable, action.operands[1]);
    if (!amount) return {};
    const std::string cls = (action.verb == "increase" ? "Engine::VarIncrement<" : "Engine::VarDecrement<") +
                            engineVariable(variable->kind) + ">";
    return object(action, cls, action.verb + kindName(variable->kind),
                  cls + "(" + variable->address + ", " + amount->code + tail);
}

std::string ActionLowering::navigate(const ActionStmt& action, const std::string& place, const std::string& tail) {
    if (!operands(action, 1, 1, "navigate Page")) return {};
    const ValuePtr target = context_.resolver.value(action.operands[0], Type::Page);
    if (target == nullptr) return {};
    if (const auto* page = target->constant()) {
        context_.explanation.visits.push_back({node_.name.text, page->text});
        return object(action, "Engine::NavigateTo", "navigates", "Engine::NavigateTo(" + page->code + tail);
    }
    if (const auto* choice = std::get_if<ChoiceValue>(&target->node))
        for (const auto& branch : choice->branches)
            if (branch.value->constant() != nullptr)
                context_.explanation.visits.push_back({node_.name.text, branch.value->constant()->text});
    const std::string address = unit_.add("Engine::NavigateTo", "navigates", "Engine::NavigateTo(nullptr" + tail);
    const std::string observer = unit_.add("Engine::Modifier<Engine::NavigateTo, Engine::Page*>", "navigateTargets",
                                           "Engine::Modifier<Engine::NavigateTo, Engine::Page*>(" + address +
                                               ", &Engine::NavigateTo::setTarget, " + values_.provider(*target) + ")");
    context_.explanation.rules.push_back({place + ".navigate", action.span, target});
    context_.observe(readVariables(*target), observer, place + ".navigate");
    return address;
}

std::string ActionLowering::group(const ActionStmt& action, const std::string& place) {
    const std::string inner = table(action.children, place);
    const std::string tail = tailOf(action, action.verb == "first" ? "Engine::Action::StopAfterFirst" : nullptr);
    return object(action, "Engine::ActionGroup", "actionGroups", "Engine::ActionGroup(" + inner + tail);
}

/// Copies the setting into its working variable, names it, and asks its popup to open.
void ActionLowering::edit(const ActionStmt& action, const std::string& place, std::vector<std::string>& out) {
    if (!operands(action, 1, 1, "edit SETTING")) return;
    const auto* name = std::get_if<NameExpr>(&action.operands[0]->node);
    const auto found = name != nullptr ? context_.edits.find(name->parts.front()) : context_.edits.end();
    if (found == context_.edits.end()) {
        const std::string written(action.operands[0]->span.text());
        context_.diagnostics.error(action.operands[0]->span, "there is no setting '" + written + "'",
                                   didYouMean(written, Names::keys(context_.edits)));
        return;
    }
    const EditRow& row = *found->second;
    ActionStmt part = action;
    const auto emit = [&](const char* verb, std::vector<ExprPtr> with) {
        part.verb = verb;
        part.operands = std::move(with);
        add(part, place, out);
    };
    if (row.source != nullptr) emit("set", {row.working, row.source});
    emit("set", {context_.editTables[row.name.text]->variable, row.number});
    std::string event = row.kind.text;
    event.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(event.front())));
    emit("fire", {std::make_shared<Expr>(Expr{row.kind.span, NameExpr{{"Event_Edit" + event + "Show"}}})});
}

/// The `if` behind an action drives its enabled bit.
void ActionLowering::drive(const ActionStmt& action, const std::string& address, const std::string& place) {
    if (action.condition == nullptr) return;
    const ValuePtr value = context_.resolver.condition(action.condition);
    if (value == nullptr) return;
    context_.useAll(*value);
    const std::string what = place + "." + action.verb + ".enabled";
    context_.explanation.rules.push_back({what, action.condition->span, value});
    const std::string observer = unit_.add("Engine::Modifier<Engine::Action, bool>", "actionEnables",
                                           "Engine::Modifier<Engine::Action, bool>(" + address +
                                               ", &Engine::Action::setEnabled, " + values_.provider(*value) + ")");
    context_.observe(readVariables(*value), observer, what);
}

}  // namespace Modelc
