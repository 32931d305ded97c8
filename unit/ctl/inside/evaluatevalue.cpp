// What a value of the model's description comes to now.
#include <charconv>

#include "unit/ctl/inside/modeldescription.h"
#include "unit/ctl/memory.h"

namespace Unit {

using Json = ModelDescription::Json;

namespace {

/// A number or a text, as a comparison sees it.
struct Operand {
    std::optional<double> number;
    std::string text;
};

Operand variableNow(const Store& store, const std::string& name) {
    const auto cell = Store::find(name);
    if (!cell) return {std::nullopt, "?"};
    Operand now = {std::nullopt, bareValue(store, *cell)};
    switch (cell->kind) {
        case Catalogue::Kind::Flag:
        case Catalogue::Kind::Int:
        case Catalogue::Kind::Enum: now.number = store.integer(*cell); break;
        case Catalogue::Kind::Float: now.number = static_cast<double>(store.real(*cell)); break;
        default: break;
    }
    if (const std::string word = valueName(store, *cell); !word.empty()) now.text = word;
    return now;
}

/// The constant of a comparison: a number, true and false, or the name of an enum's value.
std::optional<double> constantNumber(const std::string& text, const std::string& variable) {
    if (text == "true" || text == "false") return text == "true" ? 1 : 0;
    double number = 0;
    const char* last = text.data() + text.size();
    if (std::from_chars(text.data(), last, number).ptr == last) return number;
    const auto cell = Store::find(variable);
    if (!cell || cell->enumType == Catalogue::noEnumType) return std::nullopt;
    for (const auto& entry : Catalogue::enumTypes[static_cast<std::size_t>(cell->enumType)].entries)
        if (text == entry.name) return entry.value;
    return std::nullopt;
}

bool compare(const std::string& op, double left, double right) {
    if (op == "==") return left == right;
    if (op == "!=") return left != right;
    if (op == "<") return left < right;
    if (op == "<=") return left <= right;
    if (op == ">") return left > right;
    return left >= right;
}

void hold(Json& node, bool holds) {
    node["holds"] = holds;
    node["now"] = holds ? "true" : "false";
}

void evaluateCompare(Json& node, const Store& store) {
    Json& parts = node["compare"];
    parts[1] = ModelDescription::evaluate(parts[1], store);
    const std::string variable = parts[1].value("variable", "");
    const Operand left = variable.empty() ? Operand{} : variableNow(store, variable);
    const auto right = constantNumber(parts[2].get<std::string>(), variable);
    if (left.number && right) hold(node, compare(parts[0].get<std::string>(), *left.number, *right));
}

void evaluateChoice(Json& node, const Store& store) {
    for (Json& branch : node["choose"]) {
        if (!branch[0].is_null()) branch[0] = ModelDescription::evaluate(branch[0], store);
        if (!branch[0].is_null() && !holds(branch[0])) continue;
        branch[1] = ModelDescription::evaluate(branch[1], store);
        node["now"] = valueNow(branch[1]);
        if (branch[1].contains("holds")) node["holds"] = branch[1]["holds"];
        return;
    }
    node["now"] = "nothing";
}

void evaluateJunction(Json& node, const Store& store) {
    const bool isAll = node.contains("all");
    bool result = isAll;
    for (Json& operand : node[isAll ? "all" : "any"]) {
        operand = ModelDescription::evaluate(operand, store);
        if (holds(operand) != isAll) result = !isAll;
    }
    hold(node, result);
}

void evaluateConstant(Json& node, const Store&) {
    node["now"] = node["constant"];
}

void evaluateVariable(Json& node, const Store& store) {
    const std::string name = node["variable"];
    const Operand now = variableNow(store, name);
    node["now"] = now.text;
    if (const auto cell = Store::find(name); cell && cell->kind == Catalogue::Kind::Flag)
        node["holds"] = now.number == 1.0;
}

void evaluateEnumText(Json& node, const Store& store) {
    node["now"] = variableNow(store, node["enumText"]).text;
}

void evaluateNot(Json& node, const Store& store) {
    node["not"] = ModelDescription::evaluate(node["not"], store);
    hold(node, !holds(node["not"]));
}

/// A rule by its name, or a formatted value: what stands behind it.
void evaluateBehind(Json& node, const Store& store) {
    node["value"] = ModelDescription::evaluate(node["value"], store);
    node["now"] = valueNow(node["value"]);
    if (node["value"].contains("holds")) node["holds"] = node["value"]["holds"];
}

void evaluateFilled(Json& node, const Store& store) {
    node["fill"] = ModelDescription::evaluate(node["fill"], store);
    std::string parts;
    for (Json& part : node["parts"]) {
        part = ModelDescription::evaluate(part, store);
        parts += (parts.empty() ? "" : ", ") + valueNow(part);
    }
    node["now"] = valueNow(node["fill"]) + "(" + parts + ")";
}

/// A value is of the kind whose key it has.
constexpr struct {
    const char* key;
    void (*evaluate)(Json& node, const Store& store);
} kinds[] = {
    {"constant", evaluateConstant}, {"variable", evaluateVariable}, {"enumText", evaluateEnumText},
    {"compare", evaluateCompare},   {"not", evaluateNot},           {"all", evaluateJunction},
    {"any", evaluateJunction},      {"choose", evaluateChoice},     {"rule", evaluateBehind},
    {"format", evaluateBehind},     {"fill", evaluateFilled},
};

}  // namespace

Json ModelDescription::evaluate(const Json& value, const Store& store) {
    Json node = value;
    for (const auto& [key, evaluateKind] : kinds)
        if (node.contains(key)) {
            evaluateKind(node, store);
            break;
        }
    return node;
}

std::string valueNow(const Json& evaluated) {
    return evaluated.value("now", "?");
}

bool holds(const Json& evaluated) {
    if (evaluated.contains("holds")) return evaluated.at("holds").get<bool>();
    const std::string now = evaluated.value("now", "");
    return now == "true" || now == "1";
}

}  // namespace Unit
