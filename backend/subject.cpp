#include "backend/subject.h"

#include <cassert>

#include "backend/pendingslots.h"
#include "embedded-gui-engine/observer.h"

namespace Backend::Variable {

void Subject::attach(Engine::Observer* const* observers, unsigned int count) {
    assert(observers_ == nullptr && "observers are attached once");
    assert(count < 1u << 15);
    observers_ = observers;
    count_ = count & 0x7fff;
}

void Subject::notify() {
    for (unsigned int i = 0; i < count_; ++i) observers_[i]->update();
}

void Subject::syncData(bool initial) {
    if (pending_ == 0 && !initial) return;
    clearMark();
    notify();
}

void Subject::changed() {
    clearMark();
    if (callback_ != nullptr) callback_();
    notify();
}

void Subject::mark() {
    pending_ = 1;
    if (slot_ != noSlot) pendingSlots().set(slot_);
}

void Subject::clearMark() {
    if (pending_ == 0) return;
    pending_ = 0;
    if (slot_ != noSlot) pendingSlots().clear(slot_);
}

}  // namespace Backend::Variable
