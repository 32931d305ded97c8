#include "unit/server/modules/diopters.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>

#include "model/catalogue/enums.h"
#include "unit/server/modules/lengths.h"

namespace Unit {

using nlohmann::json;

namespace {

constexpr double thickestShim = 5;  // millimetres
constexpr std::size_t curvePoints = 10;

}  // namespace

Diopters::Diopters(Store& values, std::shared_ptr<FileTree> tree, std::function<double()> closest)
    : Module("diopters", values), tree_(std::move(tree)), closest_(std::move(closest)) {
    hear(wanted_, [this] { loadFile(wanted_.get()); });
    hear(file_, [this] { loadFile(file_.get()); });
    hear(clear_, [this] {
        if (clear_.take()) clear();
    });
    hear(commit_, [this] {
        if (commit_.take()) commitDistance();
    });
    hear(active_, [this] { show(); });
}

void Diopters::factory() {
    clear();
    distance_.set(2);
    shim_.set(0);
}

void Diopters::clear() {
    active_.set(false);
    for (const Text* text : {&name_, &model_, &file_}) text->set("");
    power_.set(0);
    show();
}

void Diopters::loadFile(const std::string& name) {
    if (name.empty()) return;
    std::ifstream stream(tree_->resolve(name));
    const json described = stream ? json::parse(stream, nullptr, false) : json();
    const bool usable = described.is_object() && described.value("power", json()).is_number() &&
                        described.value("diopter", json()).is_string();
    notFound_.set(!usable);
    if (!usable) return;
    name_.set(described["diopter"].get<std::string>());
    model_.set(described.value("model", std::string()));
    power_.set(std::clamp(described["power"].get<float>(), 0.0F, 10.0F));
    file_.set(name);
    active_.set(true);
    recent_.remember(name);
    show();
}

void Diopters::commitDistance() {
    const double major = static_cast<double>(major_.get()), minor = static_cast<double>(minor_.get());
    const double metres = inches_ ? (major + minor / 12) * metresPerFoot : major + minor / 100;
    if (metres > 0) distance_.set(static_cast<float>(metres));
    show();
}

void Diopters::tick(std::int64_t) {
    show();
}

void Diopters::show() {
    // A close-up lens of P dioptres brings what lies at d metres to d / (1 + P d).
    const double power = static_cast<double>(power_.get());
    const auto through = [power](double metres) { return metres / (1 + power * metres); };
    const double closest = closest_();
    const bool works = active_ && power > 0 && closest > 0;
    nearest_.set(works ? static_cast<float>(through(closest)) : 0);
    farthest_.set(works ? static_cast<float>(1 / power) : 0);
    multiplier_.set(works ? static_cast<float>(1 / (1 + power * static_cast<double>(actFocus_.get()))) : 1);
    matches_.set(!active_ || closest > 0);
    warning_.set(active_ && !matches_);

    const auto style = unit_.is(Model::LengthUnit::Feet) ? LengthStyle::Feet : LengthStyle::Metres;
    limits_.set(works ? lengthText(through(closest), style) + " - " + lengthText(1 / power, style) : "");
    distanceText_.set(lengthText(static_cast<double>(distance_.get()), style));
    // A shim of f^2 / (1000 d) millimetres moves a lens of f millimetres from infinity to d metres.
    const double focal = length_.get();
    const double distance = std::max(0.1, static_cast<double>(distance_.get()));
    shimTarget_.set(static_cast<float>(std::min(thickestShim, focal * focal / (1000 * distance))));
    pupil1_.set(static_cast<float>(works ? focal * 0.8 : 0));
    pupil2_.set(static_cast<float>(works ? focal * 0.9 : 0));
    curveStart_.set(works ? 1.4F : 0);
    for (std::size_t i = 0; i < curvePoints; ++i)
        curve_.setReal(i, works ? static_cast<float>(through(1 + static_cast<double>(i))) : 0);
    curveSize_.set(works ? static_cast<std::int32_t>(curvePoints) : 0);
}

}  // namespace Unit
