#include "unit/server/savedsettings.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <string_view>

#include "apps/common/log/log.h"
#include "model/catalogue/constants.h"

namespace Unit {

using nlohmann::json;

namespace {

constexpr std::int64_t lookPeriod = 1'000'000'000;

bool isSaved(std::int16_t area) {
    if (area == Catalogue::noArea) return false;
    const std::string_view name = Catalogue::areas[static_cast<std::size_t>(area)].name;
    return name == "MemPersistent" || name == "MemSemiPersistent";
}

}  // namespace

SavedSettings::SavedSettings(Store& store, std::filesystem::path file) : store_(store), file_(std::move(file)) {
    const auto keep = [this](std::string name) {
        if (const auto cell = Store::find(name)) kept_.push_back({std::move(name), *cell});
    };
    for (const auto& value : Catalogue::values)
        if (isSaved(value.area)) keep(value.name);
    for (const auto& table : Catalogue::tables) {
        if (!isSaved(table.area)) continue;
        for (std::size_t row = 0; row < table.rows; ++row)
            for (const auto& field : table.fields)
                keep(std::string(table.name) + "[" + std::to_string(row) + "]." + field.name);
    }
}

bool SavedSettings::survives(const Cell& cell) {
    return isSaved(cell.area);
}

void SavedSettings::zero() {
    for (const Kept& kept : kept_) store_.setBytes(kept.cell, std::vector<std::byte>(kept.cell.size));
}

void SavedSettings::restore() {
    std::ifstream stream(file_);
    const json saved = stream ? json::parse(stream, nullptr, false) : json::object();
    if (!saved.is_object()) {
        TERN_LOG(Log::Error, "%s is damaged; the settings are those of the factory.", file_.c_str());
        return;
    }
    for (const auto& [name, value] : saved.items()) {
        std::string problem = "It must be a text.";
        const auto cell = Store::find(name, problem);
        const bool usable = cell && survives(*cell) && value.is_string();
        const auto bytes = usable ? Store::parse(*cell, value.get<std::string>(), problem) : std::nullopt;
        if (bytes) {
            restored_ = true;
            store_.setBytes(*cell, *bytes);
        } else {
            TERN_LOG(Log::Warn, "Saved setting %s skipped: %s", name.c_str(), problem.c_str());
        }
    }
    written_ = copy();
}

std::vector<std::byte> SavedSettings::copy() const {
    std::vector<std::byte> bytes;
    for (const Kept& kept : kept_) {
        const auto value = store_.bytes(kept.cell);
        bytes.insert(bytes.end(), value.begin(), value.end());
    }
    return bytes;
}

void SavedSettings::tick(std::int64_t nanoseconds) {
    sinceLook_ += nanoseconds;
    if (sinceLook_ < lookPeriod) return;
    sinceLook_ = 0;
    save();
}

void SavedSettings::save() {
    std::vector<std::byte> now = copy();
    if (now == written_) return;
    json values = json::object();
    for (const Kept& kept : kept_) values[kept.name] = store_.show(kept.cell);
    const std::filesystem::path fresh = file_.string() + ".new";
    std::ofstream stream(fresh);
    stream << values.dump(1, ' ', false, json::error_handler_t::replace) << '\n';
    stream.close();
    std::error_code failed;
    if (stream) std::filesystem::rename(fresh, file_, failed);
    if (!stream || failed) {
        TERN_LOG(Log::Error, "The settings cannot be written to %s.", file_.c_str());
        return;
    }
    written_ = std::move(now);
}

}  // namespace Unit
