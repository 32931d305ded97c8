#include "unit/server/modules/optics.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "unit/server/modules/lengths.h"

namespace Unit {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr const char* infinitySign = "\u221e";

std::string shortNumber(double value) {
    char text[16];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

void sortByPosition(Scale& scale) {
    std::sort(scale.begin(), scale.end(), [](const auto& a, const auto& b) { return a.position < b.position; });
}

/// Between two numbers of a ring stands one line without a number.
void addLinesBetween(Scale& scale, const auto& positionOf) {
    const std::size_t numbered = scale.size();
    for (std::size_t i = 0; i + 1 < numbered; ++i) {
        if (std::isinf(scale[i + 1].value)) continue;
        const double middle = (scale[i].value + scale[i + 1].value) / 2;
        scale.push_back({positionOf(middle), middle, "", ""});
    }
    sortByPosition(scale);
}

std::string inchText(double feet) {
    const long inches = std::lround((feet - std::floor(feet)) * 12);
    return inches == 0 ? "" : std::to_string(inches) + "\"";
}

}  // namespace

std::span<const double> engravedMetres() {
    static constexpr double values[] = {0.35, 0.4, 0.45, 0.5, 0.6, 0.7, 0.8,  0.9,  1.0,  1.2, 1.5,
                                        2.0,  2.5, 3.0,  4.0, 5.0, 7.0, 10.0, 15.0, 20.0, 40.0};
    return values;
}

std::span<const double> engravedFeet() {
    static constexpr double values[] = {1.25, 1.5, 1.75, 2.0, 2.25, 2.5,  2.75, 3.0,  3.5,  4.0,  4.5,
                                        5.0,  6.0, 7.0,  8.0, 10.0, 12.0, 15.0, 20.0, 30.0, 50.0, 100.0};
    return values;
}

std::span<const double> engravedStops() {
    static constexpr double values[] = {1.3, 1.4, 1.5, 1.8, 2.0, 2.8, 3.5, 4.0, 5.6, 8.0, 11.0, 16.0, 22.0};
    return values;
}

std::span<const double> engravedLengths() {
    static constexpr double values[] = {25.0, 28.0, 32.0,  35.0,  40.0,  50.0, 60.0,
                                        75.0, 85.0, 100.0, 135.0, 180.0, 250.0};
    return values;
}

Engraving engravedDistance(double position, double metres) {
    return {position, metres, std::isinf(metres) ? infinitySign : shortNumber(metres), ""};
}

Engraving engravedImperial(double position, double feet) {
    if (std::isinf(feet)) return {position, feet, infinitySign, ""};
    return {position, feet, shortNumber(std::floor(feet)) + "'", inchText(feet)};
}

Engraving engravedNumber(double position, double value) {
    return {position, value, shortNumber(value), ""};
}

double LensModel::positionOfDistance(double metres) const {
    return std::isinf(metres) ? 1 : 1 - std::pow(std::min(1.0, closest / metres), helix);
}

double LensModel::distanceAt(double position) const {
    return position >= 1 ? infinity : closest / std::pow(1 - position, 1 / helix);
}

double LensModel::positionOfStop(double stop) const {
    return std::log(stop / widestStop) / std::log(lastStop / widestStop);
}

double LensModel::stopAt(double position) const {
    return widestStop * std::pow(lastStop / widestStop, position);
}

double LensModel::positionOfFocalLength(double millimetres) const {
    return isZoom() ? std::log(millimetres / shortest) / std::log(longest / shortest) : 0;
}

double LensModel::focalLengthAt(double position) const {
    return isZoom() ? shortest * std::pow(longest / shortest, position) : shortest;
}

Scale LensModel::metres() const {
    Scale scale = {engravedDistance(0, closest)};
    for (const double mark : engravedMetres())
        if (mark > closest * 1.05) scale.push_back(engravedDistance(positionOfDistance(mark), mark));
    scale.push_back(engravedDistance(1, infinity));
    addLinesBetween(scale, [this](double distance) { return positionOfDistance(distance); });
    return scale;
}

Scale LensModel::feet() const {
    const double first = closest / metresPerFoot;
    Scale scale = {engravedImperial(0, first)};
    for (const double mark : engravedFeet())
        if (mark >= first * 1.05) scale.push_back(engravedImperial(positionOfDistance(mark * metresPerFoot), mark));
    scale.push_back(engravedImperial(1, infinity));
    addLinesBetween(scale, [this](double distance) { return positionOfDistance(distance * metresPerFoot); });
    return scale;
}

Scale LensModel::stops() const {
    Scale scale;
    for (const double mark : engravedStops()) {
        const bool full = mark != 1.3 && mark != 1.5 && mark != 1.8 && mark != 3.5;
        if ((full || mark == widestStop) && mark >= widestStop && mark <= lastStop)
            scale.push_back(engravedNumber(positionOfStop(mark), mark));
    }
    addLinesBetween(scale, [this](double stop) { return positionOfStop(stop); });
    return scale;
}

Scale LensModel::focalLengths() const {
    if (!isZoom()) return {};
    Scale scale;
    for (const double mark : engravedLengths())
        if (mark >= shortest && mark <= longest) scale.push_back(engravedNumber(positionOfFocalLength(mark), mark));
    addLinesBetween(scale, [this](double millimetres) { return positionOfFocalLength(millimetres); });
    return scale;
}

const std::vector<LensModel>& lensModels() {
    static const std::vector<LensModel> models = {
        {"prime-35", "Orvo Prime 35/T1.4", "35-10217", 0.35, 35, 35, 1.4, 22, 0.55},
        {"prime-75", "Orvo Prime 75/T1.8", "75-10442", 0.7, 75, 75, 1.8, 22, 0.62},
        {"zoom-25-250", "Orvo Zoom 25-250/T3.5", "Z250-0031", 1.2, 25, 250, 3.5, 22, 0.6},
    };
    return models;
}

const LensModel* findLens(std::string_view name) {
    for (const LensModel& model : lensModels())
        if (model.name == name) return &model;
    return nullptr;
}

}  // namespace Unit
