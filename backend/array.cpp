#include "backend/array.h"

#include <algorithm>
#include <cstring>

#include "backend/var.h"
#include "embedded-gui-engine/variablebase.h"

namespace Backend::Variable {
namespace {

template <typename T>
T readPlace(const unsigned char* place) {
    T value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

}  // namespace

const char* Array::name() const {
    return providedName();
}

unsigned char* Array::address() const {
    return *type_.area != nullptr ? *type_.area + type_.offset : nullptr;
}

unsigned int Array::width() const {
    return type_.width;
}

unsigned int Array::rowSize() const {
    return rowCount_;
}

unsigned int Array::columnSize() const {
    return columnCount_;
}

int Array::properties(unsigned int row) const {
    if (row >= rowDimension()) return 0;
    constexpr int all = Engine::PropertyExists | Engine::PropertyEnabled | Engine::PropertyAlternative;
    return availability_ != nullptr ? availability_->applied(all, row) : all;
}

Var<int>* Array::getIntVariable(unsigned int column, unsigned int row) const {
    Column const* found = columnAt(column, row, CellKind::Int);
    return found != nullptr ? found->cells.ints + row * found->step : nullptr;
}

Var<float>* Array::getFloatVariable(unsigned int column, unsigned int row) const {
    Column const* found = columnAt(column, row, CellKind::Float);
    return found != nullptr ? found->cells.floats + row * found->step : nullptr;
}

Var<char const*>* Array::getStringVariable(unsigned int column, unsigned int row) const {
    Column const* found = columnAt(column, row, CellKind::String);
    return found != nullptr ? found->cells.strings + row * found->step : nullptr;
}

Var<bool>* Array::getBoolVariable(unsigned int column, unsigned int row) const {
    Column const* found = columnAt(column, row, CellKind::Flag);
    return found != nullptr ? found->cells.flags + row * found->step : nullptr;
}

Var<GuiType::CEnum<int>>* Array::getEnumVariable(unsigned int column, unsigned int row) const {
    Column const* found = columnAt(column, row, CellKind::Enum);
    return found != nullptr ? found->cells.enums + row * found->step : nullptr;
}

template <>
Var<bool>* Array::getVariable<bool>(unsigned int column, unsigned int row) const {
    return getBoolVariable(column, row);
}

template <>
Var<int>* Array::getVariable<int>(unsigned int column, unsigned int row) const {
    return getIntVariable(column, row);
}

template <>
Var<GuiType::CEnum<int>>* Array::getVariable<GuiType::CEnum<int>>(unsigned int column, unsigned int row) const {
    return getEnumVariable(column, row);
}

template <>
Var<float>* Array::getVariable<float>(unsigned int column, unsigned int row) const {
    return getFloatVariable(column, row);
}

template <>
Var<char const*>* Array::getVariable<char const*>(unsigned int column, unsigned int row) const {
    return getStringVariable(column, row);
}

unsigned int Array::rowDimension() const {
    unsigned int live = rowCount_;
    if (counter_ == nullptr || !counter_->getValue(live)) return rowCount_;
    // The counter is a signed word of the server's: a negative count is no record.
    return static_cast<int>(live) < 0 ? 0 : std::min(live, rowCount_);
}

void Array::receive() {
    if (address() == nullptr) return;
    std::for_each_n(type_.columns, columnCount_, [this](const Column& column) { receiveColumn(column); });
    mark();
}

void Array::refreshAvailability() {
    if (availability_ != nullptr && availability_->refresh()) mark();
}

void Array::syncData(bool initial) {
    if (!isSync() || initial) clearMark();
}

Column const* Array::columnAt(unsigned int column, unsigned int row, CellKind kind) const {
    if (column >= columnCount_ || row >= rowCount_) return nullptr;
    Column const* found = type_.columns + column;
    return found->kind == kind ? found : nullptr;
}

void Array::receiveColumn(const Column& column) const {
    const unsigned char* place = address() + column.offset;
    for (unsigned int row = 0; row < rowCount_; ++row, place += type_.width) {
        const unsigned int cell = row * column.step;
        switch (column.kind) {
            case CellKind::Flag: column.cells.flags[cell].receive(*place != 0); break;
            case CellKind::Int: column.cells.ints[cell].receive(readPlace<int>(place)); break;
            case CellKind::Enum: column.cells.enums[cell].receive(readPlace<int>(place)); break;
            case CellKind::Float: column.cells.floats[cell].receive(readPlace<float>(place)); break;
            case CellKind::String:
                column.cells.strings[cell].receive(reinterpret_cast<const char*>(place), column.size);
                break;
        }
    }
}

}  // namespace Backend::Variable
