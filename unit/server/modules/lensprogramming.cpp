#include "unit/server/modules/lensprogramming.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "model/catalogue/enums.h"
#include "unit/server/modules/lengths.h"

namespace Unit {

namespace fs = std::filesystem;

using Model::LensProgrammingActiveAxis;
using Model::LensProgrammingForcePadPressed;
using Model::LensProgrammingValueIsTypeOf;

namespace {

constexpr std::array brands = {"Orvo",  "Angenieux",  "Canon",   "Cooke", "Fujinon",
                               "Leica", "Panavision", "Vantage", "Zeiss"};
constexpr double travelPerSecond = 0.1;  // of the axis, at full force
constexpr double snapReach = 0.05;

bool same(double a, double b) {
    return std::abs(a - b) < 1e-6 * std::max(1.0, std::abs(a));
}

}  // namespace

LensProgramming::LensProgramming(Store& values, std::shared_ptr<FileTree> tree, Lens& lens)
    : Module("lens-programming", values),
      tree_(std::move(tree)),
      shown_(lens),
      axes_{Axis{Real(values, "VarFocusTargetValue"), &ProgrammedLens::focus},
            Axis{Real(values, "VarIrisTargetValue"), &ProgrammedLens::iris},
            Axis{Real(values, "VarZoomTargetValue"), &ProgrammedLens::zoom}} {
    listenToWizard();
    listenToMarks();
    listenToFile();
}

void LensProgramming::listenToWizard() {
    hear(prepare_, [this] {
        if (prepare_.take()) prepare();
    });
    for (const Flag* mode : {&wizard_, &editing_}) hear(*mode, [this] { begin(); });
    hear(axis_, [this] { beginAxis(); });
    hear(unit_, [this] { beginAxis(); });
    hear(serial_, [this] { serialValid_.set(FileTree::isPlainName(serial_.get())); });
    hear(randomSerial_, [this] {
        if (!randomSerial_.take()) return;
        char text[16];
        for (int number = 1; number < 1000; ++number) {
            std::snprintf(text, sizeof text, "R%05d", number);
            serial_.set(text);
            if (propose(); !fs::exists(fileOf(name_.get()))) break;
        }
        serialValid_.set(true);
    });
}

void LensProgramming::listenToMarks() {
    const auto request = [this](const Flag& flag, void (LensProgramming::*action)()) {
        hear(flag, [this, &flag, action] {
            if (flag.take() && active() != nullptr) (this->*action)();
            showValue();
        });
    };
    request(set_, &LensProgramming::setMark);
    request(delete_, &LensProgramming::deleteMark);
    request(finish_, &LensProgramming::finishAxis);
    request(moveStop_, &LensProgramming::moveMark);
    request(snap_, &LensProgramming::snap);
    hear(more_, [this] {
        if (more_.take()) moveBy(1);
    });
    hear(less_, [this] {
        if (less_.take()) moveBy(-1);
    });
    hear(moveStart_, [this] {
        if (moveStart_.take() && active() != nullptr) grabbed_ = value();
    });
}

void LensProgramming::listenToFile() {
    hear(saveButton_, [this] {
        if (saveButton_.take()) propose();
    });
    hear(name_, [this] { checkName(); });
    hear(accept_, [this] {
        if (accept_.take()) save();
    });
}

void LensProgramming::powerUp() {
    for (const Flag* flag : {&wizard_, &editing_, &saved_, &overwrite_, &invalidMark_}) flag->set(false);
    prepare();
}

void LensProgramming::prepare() {
    lens_ = ProgrammedLens();
    index_ = 0;
    grabbed_ = -1;
    axis_.set(LensProgrammingActiveAxis::None);
    serialValid_.set(FileTree::isPlainName(serial_.get()));
    number_.set(true);
    line_.set(true);
    showValue();
}

void LensProgramming::begin() {
    const ProgrammedLens* present = shown_.programmed();
    if (editing_ && present != nullptr) lens_ = *present;
    if (!editing_ && !wizard_) prepare();
    beginAxis();
}

LensProgramming::Axis* LensProgramming::active() {
    const std::int32_t axis = axis_.get();
    const bool works = wizard_ || editing_;
    return works && axis >= 1 && axis <= static_cast<std::int32_t>(axisCount)
               ? &axes_[static_cast<std::size_t>(axis) - 1]
               : nullptr;
}

std::span<const double> LensProgramming::engraved() const {
    if (axis_.is(LensProgrammingActiveAxis::Iris)) return engravedStops();
    if (axis_.is(LensProgrammingActiveAxis::Zoom)) return engravedLengths();
    return unit_.is(Model::LengthUnit::Feet) ? engravedFeet() : engravedMetres();
}

double LensProgramming::value() const {
    const bool feet = axis_.is(LensProgrammingActiveAxis::Focus) && unit_.is(Model::LengthUnit::Feet);
    return engraved()[std::min(index_, engraved().size() - 1)] * (feet ? metresPerFoot : 1);
}

std::vector<ProgrammedLens::Mark>::iterator LensProgramming::markOf(double value) {
    return std::ranges::find_if(marks(), [value](const auto& mark) { return same(mark.value, value); });
}

void LensProgramming::beginAxis() {
    index_ = 0;
    grabbed_ = -1;
    invalidMark_.set(false);
    if (active() != nullptr && !marks().empty())
        while (index_ + 1 < engraved().size() && value() <= marks().back().value) ++index_;
    showValue();
}

// A ring rises: its marks have one order, by place as by value.
void LensProgramming::setMark() {
    const double position = std::clamp(static_cast<double>(active()->target.get()), 0.0, 1.0), wanted = value();
    const auto crosses = [&](const auto& mark) {
        return !same(mark.value, wanted) && (mark.position < position) != (mark.value < wanted);
    };
    invalidMark_.set(std::ranges::any_of(marks(), crosses));
    if (invalidMark_) return;
    if (const auto old = markOf(wanted); old != marks().end()) marks().erase(old);
    const auto behind = std::ranges::find_if(marks(), [&](const auto& mark) { return mark.value > wanted; });
    marks().insert(behind, {position, wanted, number_.get()});
    if (index_ + 1 < engraved().size()) ++index_;
    showLens();
}

void LensProgramming::deleteMark() {
    if (const auto old = markOf(value()); old != marks().end()) marks().erase(old);
    showLens();
}

void LensProgramming::finishAxis() {
    invalidMark_.set(marks().size() == 1);  // one mark is no scale
    if (invalidMark_) return;
    axis_.set(LensProgrammingActiveAxis::None);
    showLens();
}

void LensProgramming::moveBy(int values) {
    const auto last = static_cast<int>(engraved().size()) - 1;
    index_ = static_cast<std::size_t>(std::clamp(static_cast<int>(index_) + values, 0, last));
    showValue();
}

void LensProgramming::moveMark() {
    if (grabbed_ < 0 || markOf(grabbed_) == marks().end()) return;
    const auto wasIndex = index_;
    while (index_ + 1 < engraved().size() && !same(value(), grabbed_)) ++index_;
    if (same(value(), grabbed_)) setMark();
    index_ = wasIndex;
    grabbed_ = -1;
}

void LensProgramming::snap() {
    const auto at = static_cast<double>(active()->target.get());
    const auto distance = [at](const auto& mark) { return std::abs(mark.position - at); };
    const auto nearest = std::ranges::min_element(marks(), {}, distance);
    if (nearest != marks().end() && distance(*nearest) < snapReach)
        active()->target.set(static_cast<float>(nearest->position));
}

void LensProgramming::tick(std::int64_t nanoseconds) {
    pushAxis(static_cast<double>(nanoseconds) * 1e-9);
    showValue();
}

void LensProgramming::pushAxis(double seconds) {
    const double force = active() != nullptr ? static_cast<double>(stick_.get()) : 0;
    pad_.set(force > 0   ? LensProgrammingForcePadPressed::Up
             : force < 0 ? LensProgrammingForcePadPressed::Down
                         : LensProgrammingForcePadPressed::None);
    if (force == 0) return;
    const double moved = static_cast<double>(active()->target.get()) + force * travelPerSecond * seconds;
    active()->target.set(static_cast<float>(std::clamp(moved, 0.0, 1.0)));
}

void LensProgramming::showValue() {
    const bool there = active() != nullptr;
    visible_.set(there);
    morePossible_.set(there && index_ + 1 < engraved().size());
    lessPossible_.set(there && index_ > 0);
    const bool known = there && markOf(value()) != marks().end();
    added_.set(known);
    stage_.set(there ? static_cast<std::int32_t>(marks().size()) : 0);
    type_.set(!known                    ? LensProgrammingValueIsTypeOf::None
              : markOf(value())->number ? LensProgrammingValueIsTypeOf::NumberAndLine
                                        : LensProgrammingValueIsTypeOf::Line);
    const double metres = there && axis_.is(LensProgrammingActiveAxis::Focus) ? value() : 0;
    const auto imperial = feetAndInches(metres + 1e-9);
    metres_.set(static_cast<float>(metres));
    feet_.set(imperial.feet);
    inches_.set(std::round(imperial.inches));
    stop_.set(there && axis_.is(LensProgrammingActiveAxis::Iris) ? static_cast<float>(value()) : 0);
    zoom_.set(there && axis_.is(LensProgrammingActiveAxis::Zoom) ? static_cast<float>(value()) : 0);
}

void LensProgramming::showLens() {
    const auto brand = static_cast<std::size_t>(brand_.get());
    lens_.brand = brand < brands.size() ? brands[brand] : otherBrand_.get();
    lens_.serial = serial_.get();
    if (length_.get() > 0) lens_.focalLength = length_.get();
    lens_.imperial = unit_.is(Model::LengthUnit::Feet);
    char length[24];
    std::snprintf(length, sizeof length, "%.4gmm", lens_.focalLength);
    lens_.label = lens_.brand + " " + lensType_.get() + " " + length;
    shown_.put(lens_);
}

// The file.

fs::path LensProgramming::fileOf(const std::string& name) const {
    return tree_->internal() / "lenses" / (name + ".lens");
}

void LensProgramming::propose() {
    showLens();
    std::string name = lens_.label + (serial_.get().empty() ? "" : " " + serial_.get());
    std::ranges::replace(name, '/', '-');
    name_.set(name);
    checkName();
}

void LensProgramming::checkName() {
    saved_.set(false);
    exists_.set(FileTree::isPlainName(name_.get()) && fs::exists(fileOf(name_.get())));
}

void LensProgramming::save() {
    const std::string name = name_.get();
    if (!FileTree::isPlainName(name)) return;
    const bool mayOverwrite = overwrite_.take();
    exists_.set(fs::exists(fileOf(name)) && !mayOverwrite);
    if (exists_) return;
    showLens();
    std::error_code ignored;
    fs::create_directories(fileOf(name).parent_path(), ignored);
    if (!lens_.save(fileOf(name))) return;
    activeFile_.set(tree_->nameOf(fileOf(name)));
    saved_.set(true);
    saved_.note();
}

}  // namespace Unit
