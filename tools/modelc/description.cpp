#include "tools/modelc/description.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

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

json toJson(const ConstantValue& value) {
    return {{"constant", value.text}};
}

json toJson(const VariableValue& value) {
    return {{"variable", value.variable->name}};
}

json toJson(const CompareValue& value) {
    return {{"compare", {operatorText(value.op), toJson(value.left), value.right.text}}};
}

json toJson(const NotValue& value) {
    return {{"not", toJson(value.operand)}};
}

json toJson(const JunctionValue& value) {
    return {{value.isAnd ? "all" : "any", toJson(value.operands)}};
}

json toJson(const ChoiceValue& value) {
    json branches = json::array();
    for (const auto& branch : value.branches)
        branches.push_back({branch.condition != nullptr ? toJson(branch.condition) : json(), toJson(branch.value)});
    return {{"choose", std::move(branches)}};
}

json toJson(const RuleValue& value) {
    return {{"rule", value.name}, {"at", placeInSource(value.value->span)}, {"value", toJson(value.value)}};
}

json toJson(const EnumTextValue& value) {
    return {{"enumText", value.variable->name}};
}

json toJson(const FormattedValue& value) {
    return {{"format", value.format}, {"value", toJson(value.source)}};
}

json toJson(const FilledValue& value) {
    return {{"fill", toJson(value.text)}, {"parts", toJson(value.parts)}};
}

json toJson(const PlaceValue& value) {
    return {{"place", toJson(value.source)}, {"in", value.table->name}};
}

json toJson(const ValuePtr& value) {
    return std::visit([](const auto& node) { return toJson(node); }, value->node);
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
