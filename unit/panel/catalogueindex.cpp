#include "unit/panel/catalogueindex.h"

#include <nlohmann/json.hpp>

#include "model/catalogue/constants.h"
#include "unit/ctl/memory.h"

namespace Unit {

using nlohmann::json;

namespace {

json limitOf(const Catalogue::Limit& limit) {
    return limit.form == Catalogue::Limit::Form::Fixed ? json(limit.value) : json();
}

}  // namespace

std::string catalogueIndex() {
    json values = json::array(), tables = json::array(), enums = json::array();
    for (const auto& value : Catalogue::values)
        if (value.area != Catalogue::noArea && value.kind != Catalogue::Kind::None)
            values.push_back(
                {value.name, kindName(value.kind), value.enumType, limitOf(value.minimum), limitOf(value.maximum)});
    for (const auto& table : Catalogue::tables) {
        json fields = json::array();
        for (const auto& field : table.fields) fields.push_back({field.name, kindName(field.kind), field.enumType});
        tables.push_back({table.name, table.rows, std::move(fields)});
    }
    for (const auto& type : Catalogue::enumTypes) {
        json entries = json::array();
        for (const auto& entry : type.entries) entries.push_back({entry.value, entry.name});
        enums.push_back(std::move(entries));
    }
    return json{{"values", values}, {"tables", tables}, {"enums", enums}}.dump();
}

}  // namespace Unit
