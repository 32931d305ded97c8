#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <nlohmann/json.hpp>
#include <source_location>
#include <string>
#include <vector>

#include "model/catalogue/constants.h"
#include "platform/virtual/virtual.h"
#include "unit/server/simulation.h"

/// A simulation over plain memory, with its files in a fresh instance folder.
class World {
  public:
    /// A value by name, as it is shown and written.
    struct NamedText {
        const char* name;
        const char* text;
    };

    World() { restart(); }

    /// The unit is switched off and on: the files stay.
    void restart() {
        simulation_.reset();
        memory_.clear();
        bases_.clear();
        for (const auto& area : Catalogue::areas) memory_.emplace_back(area.size);
        for (auto& area : memory_) bases_.push_back(area.data());
        simulation_ =
            std::make_unique<Unit::Simulation>(bases_, Unit::Surroundings{.folder = folder(), .wallClock = false});
    }

    static std::filesystem::path folder() { return Platform::Virtual::path("/tmp"); }
    Unit::Simulation& operator*() { return *simulation_; }
    Unit::Simulation* operator->() { return simulation_.get(); }

    std::string get(const std::string& name) {
        std::string problem;
        const auto cell = Unit::Store::find(name, problem);
        EXPECT_TRUE(cell) << problem;
        return cell ? simulation_->store().show(*cell) : "";
    }
    double number(const std::string& name) { return std::stod(get(name)); }
    float fraction(const std::string& name) { return std::stof(get(name)); }
    void expect(std::initializer_list<NamedText> values,
                const std::source_location& at = std::source_location::current()) {
        const testing::ScopedTrace trace(at.file_name(), static_cast<int>(at.line()), "expected here");
        for (const auto& [name, text] : values) EXPECT_EQ(get(name), text) << name;
    }

    /// As the product does: the place, then the notice.
    void write(const std::string& name, const std::string& value) {
        std::string problem;
        const auto cell = Unit::Store::find(name, problem);
        const auto bytes = cell ? Unit::Store::parse(*cell, value, problem) : std::nullopt;
        ASSERT_TRUE(bytes) << name << ": " << problem;
        simulation_->store().setBytes(*cell, *bytes);
        simulation_->changed(cell->id);
    }
    void write(std::initializer_list<NamedText> values) {
        for (const auto& [name, text] : values) write(name, text);
    }
    /// Every byte of every area, and every notice.
    void spoil(std::byte value) {
        for (auto& area : memory_) std::ranges::fill(area, value);
        for (const auto& described : Catalogue::values) simulation_->changed(described.id);
    }
    void act(const char* module, const char* setting, const nlohmann::json& value) {
        std::string problem;
        EXPECT_TRUE(simulation_->configure(module, setting, value, problem)) << problem;
    }
    void run(double seconds) {
        for (int tick = 0; tick < static_cast<int>(seconds * 60 + 0.5); ++tick) simulation_->tick(1'000'000'000 / 60);
    }
    /// The knob, and whatever follows it within some ticks.
    void turnKnobTo(double position) {
        act("hands", "knob", position);
        run(0.1);
    }

  private:
    Platform::Virtual::TemporaryInstance instance_;
    std::vector<std::vector<std::byte>> memory_;
    std::vector<std::byte*> bases_;
    std::unique_ptr<Unit::Simulation> simulation_;
};
