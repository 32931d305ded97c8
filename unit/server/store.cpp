#include "unit/server/store.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cstring>

namespace Unit {

using Catalogue::Kind;
using Catalogue::Limit;

namespace {

constexpr Limit unlimited = {Limit::Form::None, 0};

std::optional<Cell> refuse(std::string& problem, std::string reason) {
    problem = std::move(reason);
    return std::nullopt;
}

std::optional<Cell> findInTable(std::string_view name, std::size_t bracket, std::string& problem) {
    const std::string tableName(name.substr(0, bracket));
    const auto* table = Catalogue::findTable(tableName);
    if (table == nullptr) table = Catalogue::findTable(tableName + ".Rows");
    if (table == nullptr) return refuse(problem, "There is no table " + tableName + "." + didYouMean(tableName));
    std::size_t row = 0;
    const char* start = name.data() + bracket + 1;
    const char* end = name.data() + name.size();
    const auto [rest, error] = std::from_chars(start, end, row);
    if (error != std::errc() || rest == end || *rest != ']')
        return refuse(problem, "A cell is named TABLE[ROW].FIELD, with a number for the row: " + std::string(name));
    if (row >= table->rows)
        return refuse(problem, tableName + " has the rows 0 to " + std::to_string(table->rows - 1) + ".");
    std::string_view fieldName(rest + 1, static_cast<std::size_t>(end - rest - 1));
    if (fieldName.starts_with('.')) fieldName.remove_prefix(1);
    for (const Catalogue::Field& field : table->fields) {
        if (fieldName != field.name && !(fieldName.empty() && table->fields.size() == 1)) continue;
        const auto offset = static_cast<std::uint32_t>(table->base + row * table->stride + field.offset);
        return Cell{field.kind, table->area, field.enumType, table->id, offset, field.size, unlimited, unlimited};
    }
    std::string fields;
    for (const Catalogue::Field& field : table->fields) fields += std::string(" ") + field.name;
    return refuse(problem, tableName + " has no field \"" + std::string(fieldName) + "\"; it has" + fields + ".");
}

/// The longest start of `text` that fits into `room` bytes without cutting a UTF-8 character.
std::string_view fitting(std::string_view text, std::size_t room) {
    if (text.size() <= room) return text;
    while (room > 0 && (static_cast<unsigned char>(text[room]) & 0xc0) == 0x80) --room;
    return text.substr(0, room);
}

}  // namespace

std::size_t editDistance(std::string_view a, std::string_view b) {
    if (a.size() > b.size() + 3 || b.size() > a.size() + 3) return 4;
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t change = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

std::string didYouMean(std::string_view name) {
    const char* best = nullptr;
    std::size_t closest = 3;
    const auto look = [&](const char* candidate) {
        const std::size_t d = editDistance(name, candidate);
        if (d < closest) {
            closest = d;
            best = candidate;
        }
    };
    for (const auto& value : Catalogue::values) look(value.name);
    for (const auto& table : Catalogue::tables) look(table.name);
    return best == nullptr ? "" : std::string(" Did you mean ") + best + "?";
}

Store::Store(std::span<std::byte* const> bases) : bases_(bases.begin(), bases.end()) {
    for (const auto& table : Catalogue::tables) {
        if (table.counter < 0) continue;
        const std::uint16_t count = Catalogue::values[static_cast<std::size_t>(table.counter)].id;
        if (count != table.id) countedTables_.emplace_back(count, table.id);
    }
}

std::optional<Cell> Store::find(std::string_view name, std::string& problem) {
    if (const auto bracket = name.find('['); bracket != std::string_view::npos)
        return findInTable(name, bracket, problem);
    const Catalogue::Value* value = Catalogue::findValue(name);
    if (value == nullptr) {
        if (Catalogue::findTable(name) != nullptr)
            return refuse(problem, std::string(name) + " is a table; name a cell as NAME[ROW].FIELD.");
        return refuse(problem, "There is no variable " + std::string(name) + "." + didYouMean(name));
    }
    if (value->area == Catalogue::noArea || value->kind == Kind::None)
        return refuse(problem, std::string(name) + " has no place in memory.");
    return Cell{value->kind,   value->area, value->enumType, value->id,
                value->offset, value->size, value->minimum,  value->maximum};
}

std::optional<Cell> Store::find(std::string_view name) {
    std::string ignored;
    return find(name, ignored);
}

std::span<std::byte> Store::bytes(const Cell& cell) const {
    return {at(cell), cell.size};
}

std::int32_t Store::integer(const Cell& cell) const {
    if (cell.size == 1) return at(cell)[0] != std::byte{0} ? 1 : 0;
    std::int32_t value = 0;
    std::memcpy(&value, at(cell), sizeof value);
    return value;
}

float Store::real(const Cell& cell) const {
    float value = 0;
    std::memcpy(&value, at(cell), sizeof value);
    return value;
}

std::string Store::text(const Cell& cell) const {
    const auto* start = reinterpret_cast<const char*>(at(cell));
    return {start, ::strnlen(start, cell.size)};
}

void Store::setBytes(const Cell& cell, std::span<const std::byte> value) {
    assert(value.size() == cell.size);
    if (std::memcmp(at(cell), value.data(), value.size()) == 0) return;
    std::memcpy(at(cell), value.data(), value.size());
    note(cell.id);
}

void Store::setInteger(const Cell& cell, std::int32_t value) {
    const bool flag = cell.size == 1;
    const auto byte = static_cast<std::byte>(value != 0 ? 1 : 0);
    if (flag) {
        setBytes(cell, {&byte, 1});
    } else {
        setBytes(cell, std::as_bytes(std::span(&value, 1)));
    }
}

void Store::setReal(const Cell& cell, float value) {
    setBytes(cell, std::as_bytes(std::span(&value, 1)));
}

void Store::setText(const Cell& cell, std::string_view value) {
    std::vector<std::byte> field(cell.size);
    const std::string_view kept = fitting(value, cell.size - 1);
    std::memcpy(field.data(), kept.data(), kept.size());
    setBytes(cell, field);
}

void Store::note(std::uint16_t id) {
    if (id >= idLimit || noted_[id]) return;
    noted_[id] = true;
    notices_.push_back(id);
    for (const auto& [count, table] : countedTables_)
        if (count == id) note(table);
}

void Store::clearNotices() {
    for (const std::uint16_t id : notices_) noted_[id] = false;
    notices_.clear();
}

}  // namespace Unit
