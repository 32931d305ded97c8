#include "backend/handlertable.h"

#include <cstring>

#include "apps/common/event/notify.h"

namespace Backend {
namespace {

template <typename T>
T readPlace(const unsigned char* place) {
    T value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

/// Byte by byte: a NaN equals itself, 0.0 and -0.0 differ. False when the place held the value already.
template <typename T>
bool writePlace(unsigned char* place, T value) {
    if (std::memcmp(place, &value, sizeof value) == 0) return false;
    std::memcpy(place, &value, sizeof value);
    return true;
}

/// Texts are equal up to their end; what lies behind the terminator is nobody's.
bool writeText(unsigned char* place, const char* text, std::size_t size) {
    char* field = reinterpret_cast<char*>(place);
    if (std::strncmp(field, text, size) == 0) return false;
    const std::size_t length = strnlen(text, size - 1);
    std::memcpy(field, text, length);
    std::memset(field + length, 0, size - length);
    return true;
}

bool writeRow(const HandlerRow& row, unsigned char* place) {
    switch (row.kind) {
        case RowKind::Flag: return writePlace(place, static_cast<unsigned char>(row.target.flag->value() ? 1 : 0));
        case RowKind::Int: return writePlace(place, row.target.number->value());
        case RowKind::Enum: return writePlace(place, row.target.choice->value());
        case RowKind::Float: return writePlace(place, row.target.fraction->value());
        case RowKind::String: return writeText(place, row.target.text->value(), row.size);
        case RowKind::Table:
        case RowKind::EnumAvailability:
        case RowKind::TableAvailability: break;
    }
    return false;
}

}  // namespace

void applyRow(const HandlerRow& row) {
    const unsigned char* base = areaBases[row.area];
    if (base == nullptr) return;
    const unsigned char* place = base + row.offset;
    switch (row.kind) {
        case RowKind::Flag: row.target.flag->receive(*place != 0); break;
        case RowKind::Int: row.target.number->receive(readPlace<int>(place)); break;
        case RowKind::Enum: row.target.choice->receive(readPlace<int>(place)); break;
        case RowKind::Float: row.target.fraction->receive(readPlace<float>(place)); break;
        case RowKind::String: row.target.text->receive(reinterpret_cast<const char*>(place), row.size); break;
        case RowKind::Table: row.target.table->receive(); break;
        case RowKind::EnumAvailability: row.target.choice->refreshAvailability(); break;
        case RowKind::TableAvailability: row.target.table->refreshAvailability(); break;
    }
}

bool applyMessage(const HandlerTable& table, std::uint32_t id) {
    const std::span<const HandlerRow> rows = table.rowsOf(id);
    for (const HandlerRow& row : rows) applyRow(row);
    return !rows.empty();
}

void publishRow(const HandlerRow& row) {
    unsigned char* base = areaBases[row.area];
    if (base != nullptr && writeRow(row, base + row.offset)) sendEvent(row.id, 0, 0);
}

}  // namespace Backend
