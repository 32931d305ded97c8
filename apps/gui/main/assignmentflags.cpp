#include "apps/gui/main/assignmentflags.h"

#include <initializer_list>

#include "apps/common/log/log.h"

namespace {

// Values of an assignment beyond the three axes.
constexpr int aux = 4;
constexpr int distanceFade = 5;
constexpr int cinefade = 6;
constexpr int irisSecond = 7;
constexpr int zoomSecond = 8;

}  // namespace

void EntryMask::set(int entry) {
    if (entry < 0 || entry >= size) TERN_FATAL("Trying to set enum entry bit (%i) out of bounds (%i)", entry, size);
    bits_ = static_cast<std::uint16_t>(bits_ | 1U << entry);
}

AssignmentFlags assignmentFlags(const UnitAbilities& abilities) {
    constexpr EntryMask noneAndAxes = EntryMask::upTo(3);
    AssignmentFlags flags = {noneAndAxes, noneAndAxes, noneAndAxes};
    if (abilities.fullUnit) {
        for (EntryMask* mask : {&flags.knob, &flags.slider, &flags.forcePad}) mask->set(aux);
        flags.slider.set(irisSecond);
        flags.forcePad.set(zoomSecond);
    }
    if (abilities.cinefadeAvailable && abilities.cinefadeUnit)
        for (EntryMask* mask : {&flags.knob, &flags.slider, &flags.forcePad}) mask->set(cinefade);
    if (abilities.nextFeatures) flags.slider.set(distanceFade);
    return flags;
}

std::uint32_t multiSegmentFlags(const UnitAbilities& abilities) {
    return 0x6bU | (abilities.cinefadeUnit ? 0x10U : 0U) | (abilities.fullUnit ? 0x04U : 0U);
}
