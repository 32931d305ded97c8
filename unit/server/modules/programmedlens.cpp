#include "unit/server/modules/programmedlens.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>

#include "unit/server/modules/lengths.h"

namespace Unit {

using nlohmann::json;
using Marks = ProgrammedLens::Marks;

namespace {

/// What a ring moves evenly with.
enum class Thread { Reciprocal, Logarithmic };

double toThread(double value, Thread thread) {
    return thread == Thread::Reciprocal ? 1 / value : std::log(value);
}

double fromThread(double value, Thread thread) {
    return thread == Thread::Reciprocal ? 1 / value : std::exp(value);
}

/// Between two marks, and as at the last one beyond it.
double valueAt(const Marks& marks, double position, Thread thread, double otherwise) {
    if (marks.empty()) return otherwise;
    const auto above = std::ranges::find_if(marks, [position](const auto& mark) { return mark.position >= position; });
    if (above == marks.begin()) return marks.front().value;
    if (above == marks.end()) return marks.back().value;
    const auto& low = *(above - 1);
    const double part = (position - low.position) / (above->position - low.position);
    const double from = toThread(low.value, thread), to = toThread(above->value, thread);
    return fromThread(from + part * (to - from), thread);
}

Scale engrave(const Marks& marks, double factor, Engraving (*engraved)(double position, double value)) {
    Scale scale;
    for (const auto& mark : marks) {
        scale.push_back(engraved(mark.position, mark.value * factor));
        if (!mark.number) scale.back().main = scale.back().sub = "";
    }
    return scale;
}

json toJson(const Marks& marks) {
    json all = json::array();
    for (const auto& mark : marks) all.push_back({mark.position, mark.value, mark.number});
    return all;
}

bool fromJson(const json& described, const char* axis, Marks& marks) {
    for (const json& one : described.value(axis, json::array())) {
        const bool fits =
            one.is_array() && one.size() == 3 && one[0].is_number() && one[1].is_number() && one[2].is_boolean();
        if (!fits) return false;
        marks.push_back({one[0], one[1], one[2]});
        const auto& mark = marks.back();
        if (!(mark.position >= 0 && mark.position <= 1 && mark.value > 0)) return false;
        if (marks.size() > 1 &&
            !(mark.position > marks[marks.size() - 2].position && mark.value > marks[marks.size() - 2].value))
            return false;
    }
    return marks.size() <= 256;
}

std::string textOf(const json& described, const char* name) {
    const json value = described.value(name, json());
    return value.is_string() ? value.get<std::string>() : "";
}

}  // namespace

double ProgrammedLens::distanceAt(double position) const {
    return valueAt(focus, position, Thread::Reciprocal, 0);
}

double ProgrammedLens::positionOfDistance(double metres) const {
    Marks turned;  // the same curve, looked at from the other side
    for (const Mark& mark : focus) turned.push_back({mark.value, 1 + mark.position});
    return valueAt(turned, metres, Thread::Logarithmic, 1) - 1;
}

double ProgrammedLens::stopAt(double position) const {
    return valueAt(iris, position, Thread::Logarithmic, 0);
}

double ProgrammedLens::focalLengthAt(double position) const {
    return valueAt(zoom, position, Thread::Logarithmic, focalLength);
}

Scale ProgrammedLens::metres() const {
    return engrave(focus, 1, engravedDistance);
}

Scale ProgrammedLens::feet() const {
    return engrave(focus, 1 / metresPerFoot, engravedImperial);
}

Scale ProgrammedLens::stops() const {
    return engrave(iris, 1, engravedNumber);
}

Scale ProgrammedLens::focalLengths() const {
    return isZoom() ? engrave(zoom, 1, engravedNumber) : Scale();
}

bool ProgrammedLens::save(const std::filesystem::path& file) const {
    const json described = {{"label", label},        {"brand", brand},       {"serial", serial},
                            {"length", focalLength}, {"imperial", imperial}, {"focus", toJson(focus)},
                            {"iris", toJson(iris)},  {"zoom", toJson(zoom)}};
    std::ofstream stream(file);
    stream << described.dump(1, ' ', false, json::error_handler_t::replace) << '\n';
    stream.close();
    return static_cast<bool>(stream);
}

std::optional<ProgrammedLens> ProgrammedLens::load(const std::filesystem::path& file) {
    std::ifstream stream(file);
    const json described = stream ? json::parse(stream, nullptr, false) : json();
    if (!described.is_object() || !described.contains("label")) return std::nullopt;
    ProgrammedLens lens;
    lens.label = textOf(described, "label");
    lens.brand = textOf(described, "brand");
    lens.serial = textOf(described, "serial");
    const json length = described.value("length", json()), imperial = described.value("imperial", json());
    if (length.is_number() && length.get<double>() > 0) lens.focalLength = length.get<double>();
    lens.imperial = imperial.is_boolean() && imperial.get<bool>();
    const bool rising = fromJson(described, "focus", lens.focus) && fromJson(described, "iris", lens.iris) &&
                        fromJson(described, "zoom", lens.zoom);
    return rising ? std::optional(lens) : std::nullopt;
}

const LensModel* knownLensIn(const std::filesystem::path& file) {
    std::ifstream stream(file);
    const json described = stream ? json::parse(stream, nullptr, false) : json();
    return described.is_object() ? findLens(textOf(described, "lens")) : nullptr;
}

}  // namespace Unit
