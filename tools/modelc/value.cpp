#include "tools/modelc/value.h"

#include <algorithm>
#include <array>

#include "tools/modelc/overloaded.h"

namespace Modelc {

namespace {

struct TypeRow {
    Type type;
    std::string_view word;
    std::string_view cpp;
};

constexpr std::array<TypeRow, 13> types = {{
    {Type::Bool, "flag", "bool"},
    {Type::Int, "number", "int"},
    {Type::Float, "float", "float"},
    {Type::String, "string", "const char*"},
    {Type::Color, "color", "Engine::Color"},
    {Type::Align, "align", "Engine::Painter::Align"},
    {Type::Text, "text", "Engine::TextId"},
    {Type::Image, "image", "const Engine::Image*"},
    {Type::Font, "font", "Engine::Font*"},
    {Type::Page, "page", "Engine::Page*"},
    {Type::EnumVariable, "enumVariable", "Engine::EnumVariable*"},
    {Type::IntVariable, "numberVariable", "Engine::ScalarVariable<int>*"},
    {Type::FloatVariable, "floatVariable", "Engine::ScalarVariable<float>*"},
}};

const TypeRow& row(Type type) {
    return types[static_cast<std::size_t>(type)];
}

void add(std::vector<const VariableInfo*>& list, const VariableInfo* variable) {
    if (std::find(list.begin(), list.end(), variable) == list.end()) list.push_back(variable);
}

void read(const ValuePtr& value, std::vector<const VariableInfo*>& list) {
    if (value == nullptr) return;
    std::visit(Overloaded{[](const ConstantValue&) {}, [&](const VariableValue& node) { add(list, node.variable); },
                          [&](const CompareValue& node) { read(node.left, list); },
                          [&](const NotValue& node) { read(node.operand, list); },
                          [&](const JunctionValue& node) {
                              for (const auto& operand : node.operands) read(operand, list);
                          },
                          [&](const ChoiceValue& node) {
                              for (const auto& branch : node.branches) {
                                  read(branch.condition, list);
                                  read(branch.value, list);
                              }
                          },
                          [&](const RuleValue& node) { read(node.value, list); },
                          [&](const EnumTextValue& node) { add(list, node.variable); },
                          [&](const FormattedValue& node) { read(node.source, list); },
                          [&](const FilledValue& node) {
                              read(node.text, list);
                              for (const auto& part : node.parts) read(part, list);
                          },
                          [&](const PlaceValue& node) {
                              read(node.source, list);
                              add(list, node.table);
                          }},
               value->node);
}

std::string describeChoice(const ChoiceValue& choice) {
    std::string result = "choose {";
    for (const auto& branch : choice.branches)
        result += (branch.condition != nullptr ? " " + describe(*branch.condition) : " else") + " -> " +
                  describe(*branch.value) + ";";
    return result + " }";
}

}  // namespace

std::string_view typeWord(Type type) {
    return row(type).word;
}
std::string_view cppType(Type type) {
    return row(type).cpp;
}

bool typeOfWord(std::string_view word, Type& type) {
    for (const auto& one : types) {
        if (one.word != word) continue;
        type = one.type;
        return true;
    }
    return false;
}

std::string_view operatorText(Operator op) {
    static constexpr std::array<std::string_view, 6> texts = {"==", ">", "<", ">=", "<=", "!="};
    return texts[static_cast<std::size_t>(op)];
}

Operator negated(Operator op) {
    switch (op) {
        case Operator::Equal: return Operator::NotEqual;
        case Operator::NotEqual: return Operator::Equal;
        case Operator::Greater: return Operator::LessEqual;
        case Operator::LessEqual: return Operator::Greater;
        case Operator::Less: return Operator::GreaterEqual;
        case Operator::GreaterEqual: return Operator::Less;
    }
    return op;
}

Operator mirrored(Operator op) {
    switch (op) {
        case Operator::Greater: return Operator::Less;
        case Operator::Less: return Operator::Greater;
        case Operator::GreaterEqual: return Operator::LessEqual;
        case Operator::LessEqual: return Operator::GreaterEqual;
        default: return op;
    }
}

std::vector<const VariableInfo*> readVariables(const Value& value) {
    std::vector<const VariableInfo*> list;
    read(std::make_shared<Value>(value), list);
    return list;
}

std::string describe(const Value& value) {
    return std::visit(
        Overloaded{
            [](const ConstantValue& node) { return node.text; },
            [](const VariableValue& node) { return node.variable->name; },
            [](const CompareValue& node) {
                return describe(*node.left) + " " + std::string(operatorText(node.op)) + " " + node.right.text;
            },
            [](const NotValue& node) { return "!" + describe(*node.operand); },
            [](const JunctionValue& node) {
                std::string result = "(";
                for (const auto& operand : node.operands)
                    result += (result.size() > 1 ? (node.isAnd ? " && " : " || ") : "") + describe(*operand);
                return result + ")";
            },
            [](const ChoiceValue& node) { return describeChoice(node); },
            [](const RuleValue& node) { return node.name; },
            [](const EnumTextValue& node) { return "text of " + node.variable->name; },
            [](const FormattedValue& node) { return describe(*node.source) + " as \"" + node.format + "\""; },
            [](const FilledValue& node) {
                std::string result = describe(*node.text) + "(";
                for (const auto& part : node.parts) result += (result.back() != '(' ? ", " : "") + describe(*part);
                return result + ")";
            },
            [](const PlaceValue& node) { return "place of " + describe(*node.source) + " in " + node.table->name; }},
        value.node);
}

}  // namespace Modelc
