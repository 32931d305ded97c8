#pragma once

#include <array>
#include <cstdint>

namespace Engine {

class TableSource;

/// One row of a scale's table. The numbers of the columns are the order of the fields.
struct ScaleRow {
    enum Flag : std::uint32_t {
        InRange = 0x1,  ///< within the range that can be used
        Labelled = 0x2  ///< has a label, which lies within that range
    };
    static constexpr std::size_t TextSize = 16;  ///< bytes; a text that fills them has no terminator in the table
    using Text = std::array<char, TextSize + 1>;

    std::uint32_t flags = 0;
    std::int32_t axisPosition = 0;  ///< place on the linear axis, in the table's own units
    float value = 0;                ///< what the row stands for
    Text mainText{};                ///< the number
    Text subText{};                 ///< a unit or a second system of measure
    float interpolatedValue = 0;

    bool isInRange() const { return (flags & InRange) != 0; }
    bool isLabelled() const { return (flags & Labelled) != 0; }

    /// The row as the table has it now; a field without a cell is 0.
    static ScaleRow read(const TableSource& table, unsigned int index);
    /// Only the place on the axis.
    static std::int32_t axisPositionOf(const TableSource& table, unsigned int index);
};

}  // namespace Engine
