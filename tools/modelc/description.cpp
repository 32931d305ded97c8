#include "tools/modelc/description.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "tools/modelc/overloaded.h"

namespace Modelc {

namespace {

using nlohmann::json;

std::string placeInSource(Span span) {
    if (span.file == nullptr) return "";
    return span.file->path() + ":" + std::to_string(span.file->position(span.begin).line);
}

json toJson(const ValuePtr& value);

json toJson(const std::vector<ValuePtr>& values) {
    json list = json::array();
    for (const auto& value : values) list.push_back(toJson(value));
    return list;
}

json toJson(const ChoiceValue& choice) {
    json branches = json::array();
    for (const auto& branch : choice.branches)
        branches.push_back({branch.condition != nullptr ? toJson(branch.condition) : json(), toJson(branch.value)});
    return {{"choose", std::move(branches)}};
}

json toJson(const ValuePtr& value) {
    return std::visit(
        Overloaded{[](const ConstantValue& node) {
                       return json{{"constant", node.text}};
                   },
                   [](const VariableValue& node) {
                       return json{{"variable", node.variable->name}};
                   },
                   [](const CompareValue& node) {
                       return json{{"compare", {operatorText(node.op), toJson(node.left), node.right.text}}};
                   },
                   [](const NotValue& node) {
                       return json{{"not", toJson(node.operand)}};
                   },
                   [](const JunctionValue& node) {
                       return json{{node.isAnd ? "all" : "any", toJson(node.operands)}};
                   },
                   [](const ChoiceValue& node) { return toJson(node); },
                   [](const RuleValue& node) {
                       return json{
                           {"rule", node.name}, {"at", placeInSource(node.value->span)}, {"value", toJson(node.value)}};
                   },
                   [](const EnumTextValue& node) {
                       return json{{"enumText", node.variable->name}};
                   },
                   [](const FormattedValue& node) {
                       return json{{"format", node.format}, {"value", toJson(node.source)}};
                   },
                   [](const FilledValue& node) {
                       return json{{"fill", toJson(node.text)}, {"parts", toJson(node.parts)}};
                   },
                   [](const PlaceValue& node) {
                       return json{{"place", toJson(node.source)}, {"in", node.table->name}};
                   }},
        value->node);
}

std::string eventName(const Names& names, unsigned event) {
    const auto found = std::ranges::find_if(names.events, [&](const auto& one) { return one.second == event; });
    return found != names.events.end() ? found->first : std::to_string(event);
}

}  // namespace

std::string describeModel(const ModelTree& model, const Lowered& lowered, const Names& names,
                          const Explanation& explanation) {
    json all = {{"pages", json::array()},   {"overlays", json::array()}, {"rules", json::array()},
                {"drives", json::object()}, {"writes", json::object()},  {"hears", json::object()}};
    for (const auto& unit : model.units)
        if (unit->kind == UnitNode::Kind::Page) all["pages"].push_back(unit->name.text);
    for (const auto& registration : model.registrations)
        if (registration.what == RegisterDecl::What::Overlays)
            for (const auto& name : registration.names) all["overlays"].push_back(std::string(name->span.text()));
    for (const auto& rule : explanation.rules)
        all["rules"].push_back(
            {{"place", rule.place}, {"at", placeInSource(rule.span)}, {"value", toJson(rule.value)}});
    for (const auto& [variable, observations] : lowered.observers)
        for (const auto& observation : observations) {
            json& driven = all["drives"][variable];
            if (std::find(driven.begin(), driven.end(), observation.what) == driven.end())
                driven.push_back(observation.what);
        }
    for (const auto& write : explanation.writes)
        all["writes"][write.variable].push_back({{"place", write.place}, {"at", placeInSource(write.span)}});
    for (const auto& hear : explanation.hears) all["hears"][hear.place].push_back(eventName(names, hear.event));
    return all.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace Modelc
