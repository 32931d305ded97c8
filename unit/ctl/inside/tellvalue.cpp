// An evaluated value, told to a person.
#include <set>

#include "unit/ctl/inside/modeldescription.h"

namespace Unit {

using Json = ModelDescription::Json;

namespace {

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
