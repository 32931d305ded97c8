#include "tools/catalogc/layout.h"

#include <algorithm>

namespace {

constexpr ValueKind objectKinds[] = {ValueKind::Flag, ValueKind::Int, ValueKind::Enum, ValueKind::Float,
                                     ValueKind::Text};

std::size_t kindIndex(ValueKind kind) {
    return static_cast<std::size_t>(std::find(std::begin(objectKinds), std::end(objectKinds), kind) -
                                    std::begin(objectKinds));
}

bool hasObject(const Value& value) {
    return std::find(std::begin(objectKinds), std::end(objectKinds), value.kind) != std::end(objectKinds);
}

}  // namespace

Layout::Layout(const Catalogue& catalogue) : catalogue_(catalogue) {
    for (const Table& table : catalogue.tables) tables_.push_back(&table);
    std::sort(tables_.begin(), tables_.end(), [](const Table* a, const Table* b) { return a->name < b->name; });
    std::vector<const Value*> values;
    for (const Value& value : catalogue.values)
        if (hasObject(value)) values.push_back(&value);
    std::sort(values.begin(), values.end(), [](const Value* a, const Value* b) { return a->name < b->name; });

    std::size_t cells = 0;
    for (const Table* table : tables_) cells += table->rows * table->fields.size();
    variables_.reserve(values.size() + cells);
    auto table = tables_.begin();
    const auto placeTablesBefore = [&](const std::string* name) {
        for (; table != tables_.end() && (name == nullptr || (*table)->name < *name); ++table)
            for (unsigned row = 0; row < (*table)->rows; ++row)
                for (unsigned column = 0; column < (*table)->fields.size(); ++column)
                    place({(*table)->fields[column].kind, nullptr, *table, column, row});
    };
    for (const Value* value : values) {
        placeTablesBefore(&value->name);
        place({value->kind, value});
    }
    placeTablesBefore(nullptr);
    for (const Variable& variable : variables_) arrays_[kindIndex(variable.kind)].push_back(&variable);
}

void Layout::place(Variable variable) {
    unsigned& next = counts_[kindIndex(variable.kind)];
    variable.slot = static_cast<unsigned>(variables_.size());
    variable.index = next++;
    variables_.push_back(variable);
}

const std::vector<const Variable*>& Layout::array(ValueKind kind) const {
    return arrays_[kindIndex(kind)];
}

const Variable* Layout::find(const std::string& name) const {
    for (const std::string& spelling : {name, name + ".State", name + ".TableActive"}) {
        const auto found = std::find_if(variables_.begin(), variables_.end(), [&](const Variable& variable) {
            return variable.value != nullptr && variable.value->name == spelling;
        });
        if (found != variables_.end()) return &*found;
    }
    return nullptr;
}

const Variable* Layout::findCell(const Table& table, unsigned column, unsigned row) const {
    if (column >= table.fields.size() || row >= table.rows) return nullptr;
    const auto found = std::find_if(variables_.begin(), variables_.end(),
                                    [&](const Variable& variable) { return variable.table == &table; });
    return &*found + row * table.fields.size() + column;
}

std::optional<unsigned> Layout::tableIndex(const std::string& name) const {
    const auto found =
        std::find_if(tables_.begin(), tables_.end(), [&](const Table* table) { return table->name == name; });
    if (found == tables_.end()) return std::nullopt;
    return static_cast<unsigned>(found - tables_.begin());
}

unsigned Layout::cellStep(const Table& table, unsigned column) {
    const ValueKind kind = table.fields[column].kind;
    return static_cast<unsigned>(std::count_if(table.fields.begin(), table.fields.end(),
                                               [&](const Field& field) { return field.kind == kind; }));
}

std::string objectOf(const Variable& variable) {
    return std::string(arrayName(variable.kind)) + "[" + std::to_string(variable.index) + "]";
}

const char* arrayName(ValueKind kind) {
    static constexpr const char* names[] = {"flags", "ints", "enums", "floats", "strings"};
    return names[kindIndex(kind)];
}

const char* typeName(ValueKind kind) {
    static constexpr const char* names[] = {"Backend::BoolVar", "Backend::IntVar", "Backend::EnumVar",
                                            "Backend::FloatVar", "Backend::StringVar"};
    return names[kindIndex(kind)];
}

std::string identifier(const std::string& name) {
    std::string spelling = name;
    std::replace(spelling.begin(), spelling.end(), '.', '_');
    return spelling;
}
