#include "backend/pendingslots.h"

#include <bit>

namespace Backend {
namespace {

/// The lowest set bit of `word` at or above `from` (0..63); 64 when there is none.
unsigned lowestFrom(std::uint64_t word, unsigned from) {
    return static_cast<unsigned>(std::countr_zero(word & ~std::uint64_t{0} << from));
}

std::uint64_t bit(unsigned index) {
    return std::uint64_t{1} << index % 64;
}

}  // namespace

void PendingSlots::set(unsigned slot) {
    leaf_[slot / 64] |= bit(slot);
    middle_[slot / 64 / 64] |= bit(slot / 64);
    top_ |= bit(slot / 64 / 64);
}

void PendingSlots::clear(unsigned slot) {
    const unsigned leaf = slot / 64;
    const unsigned middle = leaf / 64;
    leaf_[leaf] &= ~bit(slot);
    if (leaf_[leaf] != 0) return;
    middle_[middle] &= ~bit(leaf);
    if (middle_[middle] == 0) top_ &= ~bit(middle);
}

unsigned PendingSlots::next(unsigned from) const {
    if (top_ == 0 || from >= capacity) return none;
    unsigned leaf = from / 64;
    if (const unsigned found = lowestFrom(leaf_[leaf], from % 64); found < 64) return leaf * 64 + found;
    if (++leaf == capacity / 64) return none;
    unsigned middle = leaf / 64;
    unsigned found = lowestFrom(middle_[middle], leaf % 64);
    if (found == 64) {
        if (++middle == capacity / 64 / 64) return none;
        middle = lowestFrom(top_, middle);
        if (middle == 64) return none;
        found = lowestFrom(middle_[middle], 0);
    }
    leaf = middle * 64 + found;
    return leaf * 64 + lowestFrom(leaf_[leaf], 0);
}

PendingSlots& pendingSlots() {
    static constinit PendingSlots instance;
    return instance;
}

}  // namespace Backend
