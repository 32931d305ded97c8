#pragma once

#include <cstdint>
#include <span>

#include "backend/areas.h"
#include "backend/var.h"

namespace Backend {

/// What a row of the handler's table does with its place.
enum class RowKind : std::uint8_t {
    Flag,               ///< one byte, any value but 0 is true
    Int,                ///< 32-bit word
    Enum,               ///< 32-bit word
    Float,              ///< 32-bit float
    String,             ///< text of at most `size` bytes
    Table,              ///< all cells of the table
    EnumAvailability,   ///< availability bits of an enum
    TableAvailability,  ///< availability bits of a table
};

/// One variable and the place of its value. A message id may have several rows.
struct HandlerRow {
    union Target {
        Var<bool>* flag;
        Var<int>* number;
        Var<GuiType::CEnum<int>>* choice;
        Var<float>* fraction;
        Var<char const*>* text;
        Var<GuiType::Array>* table;

        constexpr Target(Var<bool>* target) : flag(target) {}
        constexpr Target(Var<int>* target) : number(target) {}
        constexpr Target(Var<GuiType::CEnum<int>>* target) : choice(target) {}
        constexpr Target(Var<float>* target) : fraction(target) {}
        constexpr Target(Var<char const*>* target) : text(target) {}
        constexpr Target(Var<GuiType::Array>* target) : table(target) {}
    } target;
    std::uint32_t offset;  ///< bytes, in the area
    std::uint16_t id;
    std::uint16_t size;  ///< bytes
    std::uint8_t area;   ///< place in the opening order
    RowKind kind;
};

/// Everything that the handler has to know of the product. All of it is static.
struct HandlerTable {
    std::span<const AreaDefinition> areas;
    std::span<const HandlerRow> rows;  ///< by rising id
    /// The rows of id i are those from firstRow[i] up to firstRow[i + 1].
    std::span<const std::uint16_t> firstRow;
    /// The change callback of each row's variable; null for none.
    std::span<void (*const)()> callbacks;
    std::span<const std::uint16_t> subscriptions;  ///< ids, in order
    std::span<const char* const> messageNames;     ///< by id
    /// Place of the process's log threshold.
    std::uint8_t logThresholdArea;
    std::uint32_t logThresholdOffset;

    std::span<const HandlerRow> rowsOf(std::uint32_t id) const {
        if (id + std::size_t{1} >= firstRow.size()) return {};
        return rows.subspan(firstRow[id], static_cast<std::size_t>(firstRow[id + 1] - firstRow[id]));
    }
};

/// The server's value into the variable; the sync pass tells the observers. Nothing while the area is not open.
void applyRow(const HandlerRow& row);

/// All rows of a message. False for an id without one.
bool applyMessage(const HandlerTable& table, std::uint32_t id);

/// The program's value to the server: when the place holds other bytes it is written, and the row's id is sent. Rows of
/// tables and of availability bits are the server's alone and do nothing.
void publishRow(const HandlerRow& row);

}  // namespace Backend
