#include "unit/server/modules/modules.h"

#include "unit/server/modules/bluetooth.h"
#include "unit/server/modules/bus.h"
#include "unit/server/modules/camera.h"
#include "unit/server/modules/cinefade.h"
#include "unit/server/modules/clips.h"
#include "unit/server/modules/clock.h"
#include "unit/server/modules/depthcamera.h"
#include "unit/server/modules/diopters.h"
#include "unit/server/modules/distance.h"
#include "unit/server/modules/files.h"
#include "unit/server/modules/hands.h"
#include "unit/server/modules/lens.h"
#include "unit/server/modules/lensprogramming.h"
#include "unit/server/modules/marks.h"
#include "unit/server/modules/motors.h"
#include "unit/server/modules/overrides.h"
#include "unit/server/modules/power.h"
#include "unit/server/modules/radio.h"
#include "unit/server/modules/rings.h"
#include "unit/server/modules/service.h"
#include "unit/server/modules/setups.h"
#include "unit/server/modules/stopwatch.h"
#include "unit/server/modules/system.h"
#include "unit/server/modules/update.h"
#include "unit/server/simulation.h"

namespace Unit {

namespace {

using Modules = std::vector<std::unique_ptr<Module>>;

template <typename Made, typename... Arguments>
Made& add(Modules& modules, Arguments&&... arguments) {
    auto made = std::make_unique<Made>(std::forward<Arguments>(arguments)...);
    Made& reference = *made;
    modules.push_back(std::move(made));
    return reference;
}

Files::Loader loaderOf(auto& module) {
    return [&module](const std::string& name) { module.loadFile(name); };
}

}  // namespace

std::vector<std::unique_ptr<Module>> makeModules(Store& store, const Surroundings& surroundings,
                                                 std::function<void()> factoryReset) {
    const auto tree = std::make_shared<FileTree>(surroundings.folder / "files");
    Modules modules;
    add<System>(modules, store, std::move(factoryReset));
    add<Hands>(modules, store);
    add<Motors>(modules, store);
    auto& lens = add<Lens>(modules, store, tree);
    add<Marks>(modules, store);
    add<LensProgramming>(modules, store, tree, lens);
    add<Camera>(modules, store);
    add<Clips>(modules, store);
    add<Radio>(modules, store);
    add<Power>(modules, store);
    add<Clock>(modules, store, surroundings.wallClock);
    add<Stopwatch>(modules, store);
    auto& diopters = add<Diopters>(modules, store, tree, [&lens] { return lens.closest(); });
    auto& rings = add<Rings>(modules, store, tree);
    add<Distance>(modules, store, [&lens](double metres) { return lens.positionOf(metres); });
    add<DepthCamera>(modules, store);
    add<Cinefade>(modules, store);
    add<Overrides>(modules, store);
    add<Bluetooth>(modules, store);
    add<Bus>(modules, store);
    add<Service>(modules, store);
    add<Files>(modules, store, tree,
               std::array<Files::Loader, 4>{loaderOf(lens), loaderOf(rings), {}, loaderOf(diopters)});
    add<Setups>(modules, store, tree);
    add<Update>(modules, store, tree);
    return modules;
}

}  // namespace Unit
