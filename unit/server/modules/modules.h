#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "unit/server/module.h"

namespace Unit {

struct Surroundings;

/// Every module, in the order in which a tick runs through them: hands before motors before lens before camera, so that
/// a turn of the knob reaches the display in one tick. `factoryReset` puts all settings back.
std::vector<std::unique_ptr<Module>> makeModules(Store& store, const Surroundings& surroundings,
                                                 std::function<void()> factoryReset);

}  // namespace Unit
