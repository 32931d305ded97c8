#include "tools/modelc/why.h"

#include <ostream>
#include <set>

namespace Modelc {

namespace {

void printPlace(std::ostream& out, Span span) {
    if (span.file != nullptr) out << "  (" << span.file->path() << ":" << span.file->position(span.begin).line << ")";
}

void printValue(std::ostream& out, const Value& value, const std::string& indent) {
    if (const auto* rule = std::get_if<RuleValue>(&value.node)) {
        out << indent << "rule " << rule->name;
        printPlace(out, rule->value->span);
        out << "\n";
        printValue(out, *rule->value, indent + "  ");
        return;
    }
    const auto* choice = std::get_if<ChoiceValue>(&value.node);
    if (choice == nullptr) {
        out << indent << describe(value) << "\n";
        return;
    }
    for (const auto& branch : choice->branches) {
        out << indent << (branch.condition != nullptr ? "if " + describe(*branch.condition) : "else");
        if (branch.value->constant() != nullptr) {
            out << "  ->  " << describe(*branch.value) << "\n";
            continue;
        }
        out << "\n";
        printValue(out, *branch.value, indent + "  ");
    }
}

}  // namespace

bool printWhy(const Explanation& explanation, const std::string& place, std::ostream& out) {
    bool found = false;
    for (const auto& rule : explanation.rules) {
        const bool whole = rule.place == place;
        const bool below =
            rule.place.starts_with(place + ".") && rule.place.find('.', place.size() + 1) == std::string::npos;
        if (!whole && !below) continue;
        found = true;
        out << rule.place;
        printPlace(out, rule.span);
        out << "\n";
        printValue(out, *rule.value, "  ");
        const auto variables = readVariables(*rule.value);
        if (!variables.empty()) out << "  follows";
        for (const VariableInfo* variable : variables) out << " " << variable->name;
        if (!variables.empty()) out << "\n";
    }
    return found;
}

bool printWho(const Explanation& explanation, const Lowered& lowered, const std::string& variable, std::ostream& out) {
    const auto driven = lowered.observers.find(variable);
    std::set<std::string> printed;
    if (driven != lowered.observers.end()) {
        out << variable << " drives, in this order\n";
        for (const auto& observation : driven->second)
            if (printed.insert(observation.what).second) out << "  " << observation.what << "\n";
    }
    bool writes = false;
    for (const auto& write : explanation.writes) {
        if (write.variable != variable) continue;
        if (!writes) out << variable << " is written by\n";
        writes = true;
        out << "  " << write.place;
        printPlace(out, write.span);
        out << "\n";
    }
    return writes || driven != lowered.observers.end();
}

}  // namespace Modelc
