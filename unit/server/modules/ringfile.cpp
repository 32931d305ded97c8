#include "unit/server/modules/ringfile.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "unit/server/modules/optics.h"

namespace Unit {

using nlohmann::json;

namespace {

Engraving engraved(const RingFile& ring, const RingFile::Mark& mark) {
    return ring.axis == 0 && ring.imperial ? engravedImperial(mark.position, mark.value)
                                           : engravedNumber(mark.position, mark.value);
}

}  // namespace

std::string RingFile::main(const Mark& mark) const {
    return engraved(*this, mark).main;
}

std::string RingFile::sub(const Mark& mark) const {
    return engraved(*this, mark).sub;
}

bool RingFile::save(const std::filesystem::path& file) const {
    json all = json::array();
    for (const Mark& mark : marks) all.push_back({mark.position, mark.value});
    const json described = {
        {"ring", name}, {"axis", axis}, {"imperial", imperial}, {"left-handed", leftHanded}, {"marks", all}};
    std::ofstream stream(file);
    stream << described.dump(1, ' ', false, json::error_handler_t::replace) << '\n';
    stream.close();
    return static_cast<bool>(stream);
}

std::optional<RingFile> RingFile::load(const std::filesystem::path& file) {
    std::ifstream stream(file);
    const json described = stream ? json::parse(stream, nullptr, false) : json();
    if (!described.is_object()) return std::nullopt;
    const json name = described.value("ring", json()), axis = described.value("axis", json()),
               marks = described.value("marks", json());
    if (!name.is_string() || !axis.is_number_integer() || !marks.is_array() || marks.size() > RingFile::mostMarks)
        return std::nullopt;
    RingFile ring;
    ring.name = name.get<std::string>();
    ring.axis = axis.get<int>();
    if (ring.axis < 0 || ring.axis > 3) return std::nullopt;
    ring.imperial = described.value("imperial", json(false)) == json(true);
    ring.leftHanded = described.value("left-handed", json(false)) == json(true);
    for (const json& one : marks) {
        if (!one.is_array() || one.size() != 2 || !one[0].is_number() || !one[1].is_number()) return std::nullopt;
        ring.marks.push_back({one[0].get<double>(), one[1].get<double>()});
        const Mark& mark = ring.marks.back();
        const bool fits = mark.position >= 0 && mark.position <= 1 && mark.value > 0;
        if (!fits || (ring.marks.size() > 1 && mark.position <= ring.marks[ring.marks.size() - 2].position))
            return std::nullopt;
    }
    return ring;
}

}  // namespace Unit
