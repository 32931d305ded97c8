#include "backend/availableflag.h"

#include <cassert>
#include <cstring>

namespace Backend::Variable {

void AvailableFlag::configAvailableVariables(IReadAccess<unsigned char*> const* bits, unsigned int bytes,
                                             FlagType type) {
    bits_ = bits;
    bytes_ = bytes;
    type_ = type;
}

void AvailableFlag::configAvailableVariableCaches(unsigned char* inForce, unsigned char* latest, unsigned int bytes,
                                                  FlagType type) {
    assert(bytes_ == 0 || (bytes == bytes_ && type == type_));
    inForce_ = inForce;
    latest_ = latest;
    bytes_ = bytes;
    type_ = type;
}

bool AvailableFlag::refresh() {
    unsigned char* place = nullptr;
    if (bits_ == nullptr || inForce_ == nullptr || !bits_->getValue(place)) return false;
    std::memcpy(latest_, place, bytes_);
    if (std::memcmp(inForce_, latest_, bytes_) == 0) return false;
    std::memcpy(inForce_, latest_, bytes_);
    return true;
}

int AvailableFlag::applied(int properties, unsigned int entry) const {
    if (inForce_ == nullptr) return properties;
    const bool available = entry / 8 < bytes_ && (inForce_[entry / 8] >> entry % 8 & 1) != 0;
    return available ? properties : properties & ~int{type_};
}

}  // namespace Backend::Variable
