#include "tools/modelc/census.h"

#include <algorithm>
#include <map>
#include <ostream>

namespace Modelc {

namespace {

using Counts = std::vector<std::pair<std::string, std::size_t>>;

void printCounts(std::ostream& out, const std::string& title, Counts counts) {
    std::stable_sort(counts.begin(), counts.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
    std::size_t sum = 0;
    for (const auto& [what, count] : counts) sum += count;
    out << title << ": " << sum << "\n";
    for (const auto& [what, count] : counts) {
        const std::string digits = std::to_string(count);
        out << "  " << std::string(digits.size() < 7 ? 7 - digits.size() : 0, ' ') << digits << "  " << what << "\n";
    }
}

bool isObjectPool(const Pool& pool) {
    return pool.type.starts_with("Engine::") && !pool.type.ends_with(" const");
}

Counts objectsByClass(const Lowered& lowered) {
    std::map<std::string, std::size_t> counts;
    for (const auto& unit : lowered.units)
        for (const auto& pool : unit->pools())
            if (isObjectPool(*pool)) counts[pool->type] += pool->elements.size();
    return {counts.begin(), counts.end()};
}

std::string kindWord(VariableKind kind) {
    switch (kind) {
        case VariableKind::Flag: return "flags";
        case VariableKind::Int: return "numbers";
        case VariableKind::Enum: return "enums";
        case VariableKind::Float: return "floats";
        case VariableKind::String: return "strings";
        case VariableKind::Table: return "tables";
    }
    return "others";
}

Counts variablesByKind(const Lowered& lowered) {
    std::map<std::string, std::size_t> counts;
    for (const auto& [name, variable] : lowered.variables) ++counts[kindWord(variable->kind)];
    return {counts.begin(), counts.end()};
}

}  // namespace

void printCensus(const ModelTree& model, const Lowered& lowered, const Names& names, std::ostream& out) {
    printCounts(out, "objects", objectsByClass(lowered));
    Counts units = {{"pages", 0}, {"containers", 0}};
    for (const auto& unit : model.units) ++units[unit->kind == UnitNode::Kind::Page ? 0 : 1].second;
    printCounts(out, "pages and containers", units);
    printCounts(out, "variables in use, of " + std::to_string(names.variables.size()), variablesByKind(lowered));
    Counts observers;
    for (const auto& [name, list] : lowered.observers) observers.emplace_back(name, list.size());
    std::stable_sort(observers.begin(), observers.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    std::size_t ties = 0;
    for (const auto& [name, count] : observers) ties += count;
    out << "observers: " << ties << " of " << observers.size() << " variables, the most of";
    for (std::size_t i = 0; i < observers.size() && i < 5; ++i)
        out << " " << observers[i].first << " (" << observers[i].second << ")";
    out << "\n";
    std::size_t shown = 0;
    for (const auto& [name, text] : names.texts)
        shown += !text.languages.empty() && !text.languages.front().empty() ? 1 : 0;
    out << "texts: " << names.texts.size() << ", " << shown << " of them with English words\n";
}

}  // namespace Modelc
