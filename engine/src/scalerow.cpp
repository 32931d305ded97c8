#include "embedded-gui-engine/scalerow.h"

#include <cstring>

#include "embedded-gui-engine/tablesource.h"

namespace Engine {
namespace {

enum Column : unsigned int { Flags = 0, AxisPosition = 1, Value = 2, MainText = 3, SubText = 4, InterpolatedValue = 5 };

ScaleRow::Text textOf(const char* text) {
    ScaleRow::Text copy{};
    if (text != nullptr) std::memcpy(copy.data(), text, strnlen(text, ScaleRow::TextSize));
    return copy;
}

}  // namespace

ScaleRow ScaleRow::read(const TableSource& table, unsigned int index) {
    ScaleRow row;
    row.flags = static_cast<std::uint32_t>(table.intAt(Flags, index));
    row.axisPosition = axisPositionOf(table, index);
    row.value = table.floatAt(Value, index);
    row.mainText = textOf(table.textAt(MainText, index));
    row.subText = textOf(table.textAt(SubText, index));
    row.interpolatedValue = table.floatAt(InterpolatedValue, index);
    return row;
}

std::int32_t ScaleRow::axisPositionOf(const TableSource& table, unsigned int index) {
    return table.intAt(AxisPosition, index);
}

}  // namespace Engine
