#include "unit/server/modules/modules.h"

#include "unit/server/modules/camera.h"
#include "unit/server/modules/clock.h"
#include "unit/server/modules/files.h"
#include "unit/server/modules/hands.h"
#include "unit/server/modules/lens.h"
#include "unit/server/modules/marks.h"
#include "unit/server/modules/motors.h"
#include "unit/server/modules/power.h"
#include "unit/server/modules/radio.h"
#include "unit/server/modules/setups.h"
#include "unit/server/modules/stopwatch.h"
#include "unit/server/modules/system.h"
#include "unit/server/modules/update.h"
#include "unit/server/simulation.h"

namespace Unit {

std::vector<std::unique_ptr<Module>> makeModules(Store& store, const Surroundings& surroundings,
                                                 std::function<void()> factoryReset) {
    const auto tree = std::make_shared<FileTree>(surroundings.folder / "files");
    std::vector<std::unique_ptr<Module>> modules;
    modules.push_back(std::make_unique<System>(store, std::move(factoryReset)));
    modules.push_back(std::make_unique<Hands>(store));
    modules.push_back(std::make_unique<Motors>(store));
    auto lens = std::make_unique<Lens>(store, tree);
    const auto loadLens = [lens = lens.get()](const std::string& name) { lens->loadFile(name); };
    modules.push_back(std::move(lens));
    modules.push_back(std::make_unique<Marks>(store));
    modules.push_back(std::make_unique<Camera>(store));
    modules.push_back(std::make_unique<Radio>(store));
    modules.push_back(std::make_unique<Power>(store));
    modules.push_back(std::make_unique<Clock>(store, surroundings.wallClock));
    modules.push_back(std::make_unique<Stopwatch>(store));
    modules.push_back(std::make_unique<Files>(store, tree, loadLens));
    modules.push_back(std::make_unique<Setups>(store, tree));
    modules.push_back(std::make_unique<Update>(store, tree));
    return modules;
}

}  // namespace Unit
