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
    const auto found = cells_.find(table.name + "[" + std::to_string(row) + "]." + std::string(field));
    return found != cells_.end() ? &found->second : nullptr;
}

}  // namespace Modelc
