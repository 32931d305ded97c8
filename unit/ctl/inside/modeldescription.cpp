#include "unit/ctl/inside/modeldescription.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <set>

#include "unit/ctl/memory.h"
#include "unit/ctl/problem.h"

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

bool holds(const Json& node) {
    if (node.contains("holds")) return node.at("holds").get<bool>();
    const std::string now = node.value("now", "");
    return now == "true" || now == "1";
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

void evaluateJunction(Json& node, const char* key, const Store& store) {
    const bool isAll = std::string_view(key) == "all";
    bool result = isAll;
    for (Json& operand : node[key]) {
        operand = ModelDescription::evaluate(operand, store);
        if (holds(operand) != isAll) result = !isAll;
    }
    hold(node, result);
}

std::string describe(const Json& node) {
    if (node.contains("constant")) return node["constant"];
    if (node.contains("variable")) return node["variable"];
    if (node.contains("compare"))
        return describe(node["compare"][1]) + " " + node["compare"][0].get<std::string>() + " " +
               node["compare"][2].get<std::string>();
    if (node.contains("not")) return "!" + describe(node["not"]);
    for (const char* key : {"all", "any"}) {
        if (!node.contains(key)) continue;
        std::string text;
        for (const Json& operand : node[key])
            text += (text.empty() ? "" : std::string_view(key) == "all" ? " && " : " || ") + describe(operand);
        return "(" + text + ")";
    }
    if (node.contains("rule")) return "rule " + node["rule"].get<std::string>();
    if (node.contains("enumText")) return "text of " + node["enumText"].get<std::string>();
    if (node.contains("format")) return describe(node["value"]) + " as \"" + node["format"].get<std::string>() + "\"";
    if (node.contains("fill")) return describe(node["fill"]) + "(...)";
    return "choose { ... }";
}

/// The variables of a condition with their values, each once: "VarCamState is Standby".
void tellVariables(const Json& node, std::set<std::string>& told) {
    if (node.contains("variable") && node.contains("now"))
        told.insert(node["variable"].get<std::string>() + " is " + node["now"].get<std::string>());
    if (node.contains("enumText") && node.contains("now"))
        told.insert(node["enumText"].get<std::string>() + " is " + node["now"].get<std::string>());
    for (const auto& part : node)
        if (part.is_structured()) tellVariables(part, told);
}

std::string valuesOf(const Json& node) {
    std::set<std::string> told;
    tellVariables(node, told);
    std::string text;
    for (const auto& one : told) text += (text.empty() ? "   (" : ", ") + one;
    return text.empty() ? text : text + ")";
}

std::string tellCondition(const Json& condition, const std::string& indent) {
    if (condition.contains("rule"))
        return indent + (holds(condition) ? "yes  " : "no   ") + describe(condition) + "  " +
               condition.value("at", "") + "\n" + tellValue(condition["value"], indent + "       ");
    for (const char* key : {"all", "any"})
        if (condition.contains(key)) {
            std::string text = indent + (holds(condition) ? "yes  " : "no   ") +
                               (std::string_view(key) == "all" ? "all of" : "one of") + "\n";
            for (const Json& operand : condition[key]) text += tellCondition(operand, indent + "       ");
            return text;
        }
    const char* mark = !condition.contains("now") ? "-    " : holds(condition) ? "yes  " : "no   ";
    return indent + mark + describe(condition) + valuesOf(condition) + "\n";
}

}  // namespace

ModelDescription::ModelDescription(const std::string& file) {
    std::ifstream in(file);
    all_ = Json::parse(in, nullptr, false);
    if (all_.is_discarded() || !all_.is_object() || !all_.contains("rules"))
        throw Problem("The model's description " + file +
                      " is missing or damaged. Build the product (ninja gui-virtual), or install the unit anew.");
}

const Json* ModelDescription::find(const char* map, const std::string& key) const {
    const auto entries = all_.find(map);
    if (entries == all_.end()) return nullptr;
    const auto found = entries->find(key);
    return found != entries->end() ? &*found : nullptr;
}

std::vector<ModelDescription::Rule> ModelDescription::rulesOf(const std::string& place) const {
    std::vector<Rule> rules;
    for (const Json& rule : all_.at("rules")) {
        const std::string& name = rule.at("place").get_ref<const std::string&>();
        const bool below = name.starts_with(place + ".") && name.find('.', place.size() + 1) == std::string::npos;
        if (name == place || below) rules.push_back({name, rule.value("at", ""), &rule.at("value")});
    }
    return rules;
}

std::vector<ModelDescription::Rule> ModelDescription::visibleAround(const std::string& place) const {
    std::vector<Rule> rules;
    for (const Json& rule : all_.at("rules")) {
        const std::string& name = rule.at("place").get_ref<const std::string&>();
        constexpr std::string_view property = ".visible";
        if (!name.ends_with(property)) continue;
        const std::string owner = name.substr(0, name.size() - property.size());
        if (owner == place || place.starts_with(owner + "."))
            rules.push_back({name, rule.value("at", ""), &rule.at("value")});
    }
    std::ranges::sort(rules, {}, [](const Rule& rule) { return rule.place.size(); });
    return rules;
}

std::vector<std::string> ModelDescription::places() const {
    std::set<std::string> names;
    for (const Json& rule : all_.at("rules")) {
        const std::string& name = rule.at("place").get_ref<const std::string&>();
        names.insert(name);
        names.insert(name.substr(0, name.rfind('.')));
    }
    return {names.begin(), names.end()};
}

std::vector<std::string> ModelDescription::variables() const {
    std::set<std::string> names;
    for (const char* map : {"drives", "writes"})
        if (const auto entries = all_.find(map); entries != all_.end())
            for (const auto& [name, value] : entries->items()) names.insert(name);
    return {names.begin(), names.end()};
}

Json ModelDescription::evaluate(const Json& value, const Store& store) {
    Json node = value;
    if (node.contains("constant")) {
        node["now"] = node["constant"];
    } else if (node.contains("variable")) {
        const Operand now = variableNow(store, node["variable"]);
        node["now"] = now.text;
        if (const auto cell = Store::find(node["variable"].get<std::string>());
            cell && cell->kind == Catalogue::Kind::Flag)
            node["holds"] = now.number == 1.0;
    } else if (node.contains("enumText")) {
        node["now"] = variableNow(store, node["enumText"]).text;
    } else if (node.contains("compare")) {
        evaluateCompare(node, store);
    } else if (node.contains("not")) {
        node["not"] = evaluate(node["not"], store);
        hold(node, !holds(node["not"]));
    } else if (node.contains("all")) {
        evaluateJunction(node, "all", store);
    } else if (node.contains("any")) {
        evaluateJunction(node, "any", store);
    } else if (node.contains("choose")) {
        evaluateChoice(node, store);
    } else if (node.contains("rule") || node.contains("format")) {
        node["value"] = evaluate(node["value"], store);
        node["now"] = valueNow(node["value"]);
        if (node["value"].contains("holds")) node["holds"] = node["value"]["holds"];
    } else if (node.contains("fill")) {
        node["fill"] = evaluate(node["fill"], store);
        for (Json& part : node["parts"]) part = evaluate(part, store);
        std::string text = valueNow(node["fill"]) + "(";
        for (const Json& part : node["parts"]) text += (text.back() == '(' ? "" : ", ") + valueNow(part);
        node["now"] = text + ")";
    }
    return node;
}

std::string valueNow(const Json& evaluated) {
    return evaluated.value("now", "?");
}

std::string tellValue(const Json& evaluated, const std::string& indent) {
    if (evaluated.contains("constant")) return "";
    if (evaluated.contains("rule"))
        return indent + describe(evaluated) + "  " + evaluated.value("at", "") + "\n" +
               tellValue(evaluated["value"], indent + "  ");
    if (!evaluated.contains("choose"))
        return evaluated.contains("holds") ? tellCondition(evaluated, indent)
                                           : indent + describe(evaluated) + valuesOf(evaluated) + "\n";
    std::string text;
    for (const Json& branch : evaluated["choose"]) {
        const bool decided = branch[1].contains("now");
        if (branch[0].is_null())
            text += indent + (decided ? "yes  else\n" : "-    else\n");
        else
            text += tellCondition(branch[0], indent);
        text += indent + "       -> " + (decided ? valueNow(branch[1]) : describe(branch[1])) + "\n";
        if (decided) text += tellValue(branch[1], indent + "          ");
    }
    return text;
}

}  // namespace Unit
