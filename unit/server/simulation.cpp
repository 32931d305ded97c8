#include "unit/server/simulation.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "model/catalogue/constants.h"
#include "unit/server/modules/modules.h"

namespace Unit {

using nlohmann::json;

namespace {

constexpr std::string_view ownArea = "MemGuiLocal";

/// A copy of every area, to find out what has changed.
class Snapshot {
  public:
    explicit Snapshot(std::span<std::byte* const> bases) {
        for (std::size_t area = 0; area < bases.size(); ++area)
            copies_.emplace_back(bases[area], bases[area] + Catalogue::areas[area].size);
    }

    void noteDifferences(Store& store, std::span<std::byte* const> bases) const {
        const auto differs = [&](std::int16_t area, std::size_t offset, std::size_t size) {
            const auto index = static_cast<std::size_t>(area);
            return std::memcmp(copies_[index].data() + offset, bases[index] + offset, size) != 0;
        };
        for (const auto& value : Catalogue::values)
            if (value.area != Catalogue::noArea && differs(value.area, value.offset, value.size)) store.note(value.id);
        for (const auto& table : Catalogue::tables)
            if (differs(table.area, table.base, std::size_t{table.rows} * table.stride)) store.note(table.id);
    }

  private:
    std::vector<std::vector<std::byte>> copies_;
};

std::string plain(const json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

struct Assignment {
    Cell cell;
    std::vector<std::byte> bytes;
};

std::vector<Assignment> checkValues(const json& values, std::vector<std::string>& problems) {
    std::vector<Assignment> assignments;
    if (!values.is_object()) {
        problems.push_back("\"values\" must be an object of variable names.");
        return assignments;
    }
    for (const auto& [name, value] : values.items()) {
        std::string problem;
        const auto cell = Store::find(name, problem);
        if (!cell) {
            problems.push_back(problem);
        } else if (auto bytes = Store::parse(*cell, plain(value), problem)) {
            assignments.push_back({*cell, std::move(*bytes)});
        } else {
            problems.push_back(name + ": " + problem);
        }
    }
    return assignments;
}

}  // namespace

Simulation::Simulation(std::span<std::byte* const> bases, const Surroundings& surroundings)
    : bases_(bases.begin(), bases.end()), store_(bases), saved_(store_, surroundings.folder / "settings.json") {
    addModules(surroundings);
    hearings_.resize(Store::idLimit);
    for (const auto& module : modules_)
        for (const auto& [id, reaction] : module->hearings()) hearings_[id].push_back(reaction);
    keepWithinLimits();
    for (const auto& module : modules_) module->factory();
    saved_.restore();
    for (const auto& module : modules_) module->powerUp();
    store_.clearNotices();
}

Simulation::~Simulation() = default;

void Simulation::addModules(const Surroundings& surroundings) {
    modules_ = makeModules(store_, surroundings, [this] { factoryReset(); });
}

/// A value whose range does not hold zero begins at its end.
void Simulation::keepWithinLimits() {
    for (const auto& value : Catalogue::values) {
        const auto cell = value.minimum.form == Catalogue::Limit::Form::Fixed && value.minimum.value > 0
                              ? Store::find(value.name)
                              : std::nullopt;
        if (!cell) continue;
        if (cell->kind == Catalogue::Kind::Float && !(static_cast<double>(store_.real(*cell)) >= value.minimum.value))
            store_.setReal(*cell, static_cast<float>(value.minimum.value));
        if (cell->kind == Catalogue::Kind::Int && store_.integer(*cell) < value.minimum.value)
            store_.setInteger(*cell, static_cast<std::int32_t>(value.minimum.value));
    }
}

void Simulation::switchOn() {
    keepWithinLimits();
    for (const auto& module : modules_) module->factory();
    for (const auto& module : modules_) module->powerUp();
}

void Simulation::factoryReset() {
    saved_.zero();
    keepWithinLimits();
    for (const auto& module : modules_) module->factory();
}

bool Simulation::loadScene(const std::filesystem::path& file, std::vector<std::string>& problems, SceneUse use) {
    std::ifstream stream(file);
    std::error_code none;
    if (!stream || std::filesystem::is_directory(file, none)) {
        problems.push_back("The scene " + file.string() + " cannot be read. Is there such a file?");
        return false;
    }
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    try {
        return applyScene(json::parse(text, nullptr, true, true), problems, use);
    } catch (const json::parse_error& error) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
        problems.push_back("The scene " + file.string() + " is no JSON: see line " +
                           std::to_string(1 + std::count(text.begin(), end, '\n')) + ".");
        return false;
    }
}

std::vector<Simulation::WantedSetting> Simulation::checkSettings(const json& modules,
                                                                 std::vector<std::string>& problems) const {
    std::vector<WantedSetting> settings;
    if (!modules.is_object()) {
        problems.push_back("\"modules\" must be an object of module names.");
        return settings;
    }
    for (const auto& [module, wanted] : modules.items()) {
        if (!wanted.is_object()) {
            problems.push_back("The module " + module + " takes an object of settings.");
            continue;
        }
        for (const auto& [name, value] : wanted.items()) {
            std::string problem;
            const Setting* setting = findSetting(module, name, problem);
            if (setting != nullptr && setting->accepts(value, problem))
                settings.emplace_back(setting, value);
            else
                problems.push_back(module + ": " + problem);
        }
    }
    return settings;
}

bool Simulation::applyScene(const json& scene, std::vector<std::string>& problems, SceneUse use) {
    if (!scene.is_object()) {
        problems.push_back("A scene is a JSON object.");
        return false;
    }
    for (const auto& [key, ignored] : scene.items())
        if (key != "about" && key != "values" && key != "modules")
            problems.push_back("A scene has no \"" + key + "\"; it has \"about\", \"modules\" and \"values\".");
    auto assignments = checkValues(scene.value("values", json::object()), problems);
    const auto settings = checkSettings(scene.value("modules", json::object()), problems);
    if (!problems.empty()) return false;

    const Snapshot before(bases_);
    if (use == SceneUse::Anew) {
        for (std::size_t area = 0; area < bases_.size(); ++area)
            if (Catalogue::areas[area].name != ownArea) std::memset(bases_[area], 0, Catalogue::areas[area].size);
        switchOn();
    } else if (saved_.restored()) {
        std::erase_if(assignments, [](const Assignment& one) { return SavedSettings::survives(one.cell); });
    }
    for (const auto& [setting, value] : settings) setting->apply(value);
    for (const auto& [cell, bytes] : assignments) store_.setBytes(cell, bytes);
    for (const auto& assignment : assignments) changed(assignment.cell.id);
    tick(0);  // what follows from all that is there before anybody looks
    store_.clearNotices();
    before.noteDifferences(store_, bases_);
    return true;
}

void Simulation::tick(std::int64_t nanoseconds) {
    for (const auto& module : modules_) module->tick(nanoseconds);
    saved_.tick(nanoseconds);
}

void Simulation::changed(std::uint16_t id) {
    if (id >= hearings_.size()) return;
    for (const auto& reaction : hearings_[id]) reaction();
}

const Setting* Simulation::findSetting(const std::string& module, const std::string& setting,
                                       std::string& problem) const {
    std::string known;
    for (const auto& candidate : modules_) {
        if (candidate->name() != module) {
            known += " " + candidate->name();
            continue;
        }
        std::string has;
        for (const Setting& one : candidate->settings()) {
            if (one.name == setting) return &one;
            has += " " + one.name;
        }
        problem = "There is no setting \"" + setting + "\"; it has" + (has.empty() ? " none" : has) + ".";
        return nullptr;
    }
    problem = "There is no module \"" + module + "\"; there are" + known + ".";
    return nullptr;
}

bool Simulation::configure(const std::string& module, const std::string& setting, const json& value,
                           std::string& problem) {
    const Setting* found = findSetting(module, setting, problem);
    if (found == nullptr || !found->accepts(value, problem)) return false;
    found->apply(value);
    return true;
}

json Simulation::describe() const {
    json described = json::object();
    for (const auto& module : modules_) {
        json& settings = described[module->name()] = json::object();
        for (const Setting& setting : module->settings()) settings[setting.name] = setting.describe();
    }
    return described;
}

}  // namespace Unit
