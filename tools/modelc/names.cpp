#include "tools/modelc/names.h"

#include <algorithm>

namespace Modelc {

const EnumInfo::Value* EnumInfo::value(std::string_view wanted) const {
    const auto found =
        std::find_if(values.begin(), values.end(), [&](const Value& value) { return value.name == wanted; });
    return found != values.end() ? &*found : nullptr;
}

const VariableInfo* Names::variable(std::string_view name) const {
    const auto found = variables.find(name);
    return found != variables.end() ? &found->second : nullptr;
}

const VariableInfo* Names::cell(const TableInfo& table, int row, std::string_view field) const {
    const auto column =
        std::find_if(table.columns.begin(), table.columns.end(), [&](const auto& one) { return one.field == field; });
    if (column == table.columns.end() || row < 0 || row >= table.rows) return nullptr;
    const std::string name = table.name + "[" + std::to_string(row) + "]." + column->field;
    const auto [entry, fresh] = cells_.try_emplace(name);
    if (fresh) {
        entry->second.name = name;
        entry->second.kind = column->kind;
        entry->second.size = column->size;
        entry->second.address = "cell(" + table.name + ", " + std::to_string(column - table.columns.begin()) + ", " +
                                std::to_string(row) + ")";
    }
    return &entry->second;
}

}  // namespace Modelc
