#include "tools/modelc/lowervalues.h"

#include <array>
#include <cctype>

#include "tools/modelc/overloaded.h"

namespace Modelc {

namespace {

std::string operatorCode(Operator op) {
    static constexpr std::array<std::string_view, 6> names = {"Equal",        "Greater",   "Less",
                                                              "GreaterEqual", "LessEqual", "NotEqual"};
    return "Engine::CompareOperator::" + std::string(names[static_cast<std::size_t>(op)]);
}

std::string templateOf(std::string_view name, Type type) {
    return "Engine::" + std::string(name) + "<" + std::string(cppType(type)) + ">";
}

}  // namespace

std::string arrayName(Type type, std::string_view plural) {
    std::string result(typeWord(type));
    result += static_cast<char>(std::toupper(static_cast<unsigned char>(plural.front())));
    return result + std::string(plural.substr(1));
}

std::string tableSourceOf(LoweredUnit& unit, const VariableInfo& table) {
    const std::string cls = "Engine::ArrayTableSource<Backend::ArrayVar>";
    return unit.intern(cls, "tableSources", cls + "(" + table.address + ")");
}

std::string ValueLowering::result(Type type, const std::string& code) {
    const std::string cls = templateOf("Result", type);
    return unit_.intern(cls, arrayName(type, "results"), cls + "(" + code + ")");
}

std::string ValueLowering::otherwise() {
    return unit_.intern("Engine::CondElse", "otherwise", "Engine::CondElse()");
}

std::string ValueLowering::choice(Type type, const std::vector<Branch>& branches) {
    std::vector<std::string> entries;
    for (const auto& branch : branches) entries.push_back("{" + branch.condition + ", " + branch.value + "}");
    const std::string table = unit_.table("const Engine::ConditionalEntry<" + std::string(cppType(type)) + ">",
                                          arrayName(type, "branches"), entries);
    const std::string cls = templateOf("ConditionalValue", type);
    return unit_.intern(cls, arrayName(type, "choices"), cls + "(" + table + ")");
}

std::string ValueLowering::compare(const CompareValue& node, Operator op) {
    const Type type = node.left->type;
    const std::string cls = templateOf("Compare", type);
    return unit_.intern(cls, arrayName(type, "compares"),
                        cls + "(" + provider(*node.left) + ", " + node.right.code + ", " + operatorCode(op) + ")");
}

std::string ValueLowering::compareFlag(const std::string& flag, bool wanted) {
    return unit_.intern("Engine::Compare<bool>", arrayName(Type::Bool, "compares"),
                        "Engine::Compare<bool>(" + flag + ", " + (wanted ? "true" : "false") + ")");
}

/// There is no conjunction among the conditions: the first false operand decides it, and otherwise it is true.
std::string ValueLowering::junction(const JunctionValue& node) {
    std::vector<Branch> branches;
    for (const auto& operand : node.operands)
        branches.push_back({node.isAnd ? negatedCondition(*operand) : condition(*operand),
                            result(Type::Bool, node.isAnd ? "false" : "true")});
    branches.push_back({otherwise(), result(Type::Bool, node.isAnd ? "true" : "false")});
    return choice(Type::Bool, branches);
}

std::string ValueLowering::rule(const RuleValue& node, Type type) {
    const auto found = ruleAddresses_.find(node.name);
    if (found != ruleAddresses_.end()) return found->second;
    ValueLowering shared(rules_, rules_, ruleAddresses_);
    const std::string address = node.value->constant() != nullptr ? shared.result(type, node.value->constant()->code)
                                                                  : shared.provider(*node.value);
    return ruleAddresses_[node.name] = address;
}

std::string ValueLowering::provider(const Value& value) {
    const auto flag = [&](const std::string& when) {
        return choice(Type::Bool, {{when, result(Type::Bool, "true")}, {otherwise(), result(Type::Bool, "false")}});
    };
    return std::visit(
        Overloaded{[&](const ConstantValue& node) { return result(value.type, node.code); },
                   [&](const VariableValue& node) { return node.variable->address; },
                   [&](const CompareValue& node) { return flag(compare(node, node.op)); },
                   [&](const NotValue& node) { return flag(negatedCondition(*node.operand)); },
                   [&](const JunctionValue& node) { return junction(node); },
                   [&](const ChoiceValue& node) {
                       std::vector<Branch> branches;
                       for (const auto& branch : node.branches)
                           branches.push_back({branch.condition != nullptr ? condition(*branch.condition) : otherwise(),
                                               provider(*branch.value)});
                       return choice(value.type, branches);
                   },
                   [&](const RuleValue& node) { return rule(node, value.type); },
                   [&](const EnumTextValue& node) {
                       return unit_.intern("Engine::Translator<Engine::EnumVariable>", "translators",
                                           "Engine::Translator<Engine::EnumVariable>(" + node.variable->address + ")");
                   },
                   // Formats and filled texts are no providers: a label's content is lowered with the label.
                   [](const FormattedValue&) { return std::string("nullptr"); },
                   [](const FilledValue&) { return std::string("nullptr"); },
                   [&](const PlaceValue& node) {
                       return unit_.intern("Engine::ScalePlace", "places",
                                           "Engine::ScalePlace(" + tableSourceOf(unit_, *node.table) + ", " +
                                               provider(*node.source) + ")");
                   }},
        value.node);
}

std::string ValueLowering::condition(const Value& value) {
    if (const auto* node = value.constant())
        return node->code == "true" ? otherwise() : compareFlag(result(Type::Bool, "false"), true);
    if (const auto* node = std::get_if<CompareValue>(&value.node)) return compare(*node, node->op);
    if (const auto* node = std::get_if<NotValue>(&value.node)) return negatedCondition(*node->operand);
    if (const auto* node = std::get_if<JunctionValue>(&value.node); node != nullptr && !node->isAnd) {
        std::vector<std::string> conditions;
        for (const auto& operand : node->operands) conditions.push_back(condition(*operand));
        const std::string list = unit_.table("Engine::Condition* const", "alternatives", conditions);
        return unit_.intern("Engine::Or", "ors", "Engine::Or(" + list + ")");
    }
    return compareFlag(provider(value), true);
}

std::string ValueLowering::negatedCondition(const Value& value) {
    if (const auto* node = std::get_if<NotValue>(&value.node)) return condition(*node->operand);
    if (const auto* node = std::get_if<CompareValue>(&value.node)) {
        // With a NaN on the left "not less" is no "greater or equal"; equality and its opposite are exact.
        const bool exact =
            node->left->type != Type::Float || node->op == Operator::Equal || node->op == Operator::NotEqual;
        if (exact) return compare(*node, negated(node->op));
    }
    return compareFlag(provider(value), false);
}

}  // namespace Modelc
