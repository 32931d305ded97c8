#include "backend/syncpass.h"

#include "backend/array.h"
#include "backend/pendingslots.h"

namespace Backend {
namespace {

void syncTable(Variable::Array& table, bool initial) {
    table.syncData(initial);
    table.notifyObserver();
}

void syncEverything(const VariableSet& variables) {
    for (unsigned int slot = 0; slot < variables.slotCount; ++slot) variables.slots[slot]->syncData(true);
    for (unsigned int i = 0; i < variables.tableCount; ++i) syncTable(*variables.tables[i], true);
}

}  // namespace

void syncAll(const VariableSet& variables, bool initial) {
    if (initial) return syncEverything(variables);
    const PendingSlots& pending = pendingSlots();
    const unsigned end = variables.slotCount + variables.tableCount;
    for (unsigned slot = pending.next(0); slot < end; slot = pending.next(slot + 1)) {
        if (slot < variables.slotCount)
            variables.slots[slot]->syncData(false);
        else
            syncTable(*variables.tables[slot - variables.slotCount], false);
    }
}

}  // namespace Backend
