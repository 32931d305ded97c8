#include "unit/server/store.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

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

bool outOf(double value, const Limit& minimum, const Limit& maximum) {
    return (minimum.form == Limit::Form::Fixed && !(value >= minimum.value)) ||
           (maximum.form == Limit::Form::Fixed && !(value <= maximum.value));
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

std::string rangeOf(const Cell& cell) {
    const auto side = [](const Limit& limit, const char* open) {
        return limit.form == Limit::Form::Fixed ? number(limit.value) : std::string(open);
    };
    return side(cell.minimum, "anything") + " to " + side(cell.maximum, "anything");
}

template <typename T>
std::optional<std::vector<std::byte>> bytesOf(T value) {
    std::vector<std::byte> bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

std::optional<std::int32_t> parseEnum(const Cell& cell, std::string_view text, std::string& problem) {
    std::int32_t value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool numeric = error == std::errc() && rest == text.data() + text.size();
    if (cell.enumType == Catalogue::noEnumType) {
        if (numeric) return value;
        problem = "\"" + std::string(text) + "\" is no number.";
        return std::nullopt;
    }
    const auto& type = Catalogue::enumTypes[static_cast<std::size_t>(cell.enumType)];
    std::string known;
    for (const auto& entry : type.entries) {
        if (text == entry.name || (numeric && entry.value == value)) return entry.value;
        if (known.size() < 200) known += " " + std::to_string(entry.value) + "=" + entry.name;
    }
    problem = "\"" + std::string(text) + "\" is no " + type.name + "; there are" + known + ".";
    return std::nullopt;
}

std::optional<std::vector<std::byte>> parseMask(const Cell& cell, std::string_view text, std::string& problem) {
    std::vector<std::byte> mask(cell.size);
    if (text == "none") return mask;
    if (text == "all") {
        std::fill(mask.begin(), mask.end(), std::byte{0xff});
        return mask;
    }
    for (std::size_t i = 0; i < cell.size; ++i) {
        unsigned byte = 0;
        const char* digits = text.data() + 2 * i;
        if (text.size() != 2 * mask.size() || std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) {
            problem = "A mask is \"all\", \"none\" or " + std::to_string(2 * mask.size()) + " hexadecimal digits.";
            return std::nullopt;
        }
        mask[i] = static_cast<std::byte>(byte);
    }
    return mask;
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

std::string Store::show(const Cell& cell) const {
    switch (cell.kind) {
        case Kind::Text: return text(cell);
        case Kind::Float: return number(static_cast<double>(real(cell)));
        case Kind::Mask: {
            std::string digits;
            char pair[3];
            for (const std::byte byte : bytes(cell)) {
                std::snprintf(pair, sizeof pair, "%02x", std::to_integer<unsigned>(byte));
                digits += pair;
            }
            return digits;
        }
        default: return std::to_string(integer(cell));
    }
}

std::optional<std::vector<std::byte>> Store::parse(const Cell& cell, std::string_view text, std::string& problem) {
    if (cell.kind == Kind::Mask) return parseMask(cell, text, problem);
    if (cell.kind == Kind::Text) {
        if (text.size() >= cell.size) {
            problem = "The text has " + std::to_string(text.size()) + " bytes, " + std::to_string(cell.size - 1) +
                      " are possible.";
            return std::nullopt;
        }
        std::vector<std::byte> field(cell.size);
        std::memcpy(field.data(), text.data(), text.size());
        return field;
    }
    if (cell.kind == Kind::Enum) {
        const auto value = parseEnum(cell, text, problem);
        return value ? bytesOf(*value) : std::nullopt;
    }
    if (text == "true") text = "1";
    if (text == "false") text = "0";
    double value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || rest != text.data() + text.size() || (std::isnan(value) && cell.kind != Kind::Float)) {
        problem = "\"" + std::string(text) + "\" is no number.";
        return std::nullopt;
    }
    if (cell.kind == Kind::Flag) {
        if (value == 0 || value == 1) return bytesOf(static_cast<std::uint8_t>(value));
        problem = "A flag is 0 or 1.";
        return std::nullopt;
    }
    if (outOf(value, cell.minimum, cell.maximum)) {
        problem = std::string(text) + " is out of range: " + rangeOf(cell) + ".";
        return std::nullopt;
    }
    if (cell.kind == Kind::Float) {
        if (std::isinf(static_cast<float>(value)) == std::isinf(value)) return bytesOf(static_cast<float>(value));
        problem = std::string(text) + " is beyond a number of 32 bits.";
        return std::nullopt;
    }
    if (value != std::floor(value) || std::abs(value) > std::numeric_limits<std::int32_t>::max()) {
        problem = std::string(text) + " is no whole number of 32 bits.";
        return std::nullopt;
    }
    return bytesOf(static_cast<std::int32_t>(value));
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
