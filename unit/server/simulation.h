#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <vector>

#include "unit/server/module.h"
#include "unit/server/savedsettings.h"
#include "unit/server/store.h"

namespace Unit {

/// Where the unit keeps its files, and whose time it lives in.
struct Surroundings {
    std::filesystem::path folder;  ///< exists and can be written
    bool wallClock = true;         ///< false: date and time begin the same at every start
};

/// What a scene is to change: everything, or only what is connected to the unit, so that the settings that the unit
/// has saved stay.
enum class SceneUse { Anew, Hardware };

/// The unit behind the memory areas: all modules together, their settings and scenes.
class Simulation {
  public:
    /// `bases` as for Store. Values are those of a unit that has just been switched on, with its saved settings.
    Simulation(std::span<std::byte* const> bases, const Surroundings& surroundings);
    ~Simulation();

    /// Factory settings, switched on anew, then what the scene says. Nothing happens, and every mistake stands in
    /// `problems`, when the scene has any. Variables that belong to the user interface alone stay as they are.
    bool loadScene(const std::filesystem::path& file, std::vector<std::string>& problems,
                   SceneUse use = SceneUse::Anew);
    bool applyScene(const nlohmann::json& scene, std::vector<std::string>& problems, SceneUse use = SceneUse::Anew);

    void tick(std::int64_t nanoseconds);
    /// The notice `id` came from outside.
    void changed(std::uint16_t id);
    /// What a person does to the hardware.
    bool configure(const std::string& module, const std::string& setting, const nlohmann::json& value,
                   std::string& problem);
    /// Every module's settings with kind, range and present value.
    nlohmann::json describe() const;
    void save() { saved_.save(); }

    Store& store() { return store_; }

  private:
    using WantedSetting = std::pair<const Setting*, nlohmann::json>;

    /// What a scene says of the modules; each mistake in `problems`.
    std::vector<WantedSetting> checkSettings(const nlohmann::json& modules, std::vector<std::string>& problems) const;
    void addModules(const Surroundings& surroundings);
    void switchOn();
    void factoryReset();
    void keepWithinLimits();
    const Setting* findSetting(const std::string& module, const std::string& setting, std::string& problem) const;

    std::vector<std::byte*> bases_;
    Store store_;
    SavedSettings saved_;
    std::vector<std::unique_ptr<Module>> modules_;
    std::vector<std::vector<std::function<void()>>> hearings_;  ///< by id
};

}  // namespace Unit
