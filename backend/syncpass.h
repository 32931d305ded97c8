#pragma once

#include "backend/subject.h"

namespace Backend {

namespace Variable {
class Array;
}

/// All variables of the process in slot order, then all tables: a table's slot is its place plus `slotCount`.
struct VariableSet {
    Variable::Subject* const* slots;
    unsigned int slotCount;
    Variable::Array* const* tables;
    unsigned int tableCount;
};

/// The sync pass. With `initial` every variable and table tells its observers; otherwise those with a change that
/// waits, each at its place in the order. A change made meanwhile is told in the same pass when its slot lies ahead,
/// and in the next pass when it lies behind.
void syncAll(const VariableSet& variables, bool initial);

}  // namespace Backend
