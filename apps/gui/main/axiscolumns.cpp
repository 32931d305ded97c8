#include "apps/gui/main/axiscolumns.h"

#include <initializer_list>

namespace {

/// The column of the axis that an assignment names, null when it names no lens axis.
int* columnOf(AxisColumns& columns, int assignment) {
    switch (assignment) {
        case AssignedFocus: return &columns.focus;
        case AssignedIris:
        case AssignedIrisSecond: return &columns.iris;
        case AssignedZoom:
        case AssignedZoomSecond: return &columns.zoom;
        default: return nullptr;
    }
}

void placeSideControl(AxisColumns& columns, const Assignments& assignments) {
    int* column = columnOf(columns, assignments.slider);
    if (column == nullptr) column = columnOf(columns, assignments.forcePad);
    if (column != nullptr && column != &columns.focus && *column == AxisColumns::notPlaced) *column = AxisColumns::left;
}

}  // namespace

int Assignments::single() const {
    for (const int assignment : {knob, slider})
        if (assignment != AssignedNone) return assignment;
    return forcePad;
}

AxisColumns axisColumns(const Assignments& assignments, Rows rows, Hand hand) {
    AxisColumns columns;
    int* main = columnOf(columns, assignments.knob);
    if (rows == Rows::Single)
        for (const int other : {assignments.slider, assignments.forcePad})
            if (main == nullptr) main = columnOf(columns, other);
    if (main != nullptr) *main = AxisColumns::right;
    if (rows == Rows::PerAxis) {
        placeSideControl(columns, assignments);
        for (int* column : {&columns.focus, &columns.iris, &columns.zoom})
            if (*column == AxisColumns::notPlaced) *column = AxisColumns::middle;
    }
    if (hand == Hand::Left)
        for (int* column : {&columns.focus, &columns.iris, &columns.zoom})
            if (*column != AxisColumns::notPlaced) *column = AxisColumns::right - *column;
    return columns;
}
