#include "unit/server/modules/lens.h"

#include <algorithm>
#include <cmath>
#include <fstream>

#include "model/catalogue/enums.h"

namespace Unit {

namespace {

constexpr int encoderLast = 65535;
constexpr std::int32_t inRange = 1, numbered = 2;
/// What stands for infinity in a float that a display shows.
constexpr double farthest = 9999;

std::string member(const std::string& table, const char* name) {
    return table + "." + name;
}

std::vector<std::string> lensChoices() {
    std::vector<std::string> choices = {"none"};
    for (const LensModel& model : lensModels()) choices.push_back(model.name);
    return choices;
}

float finite(double value) {
    return static_cast<float>(std::min(value, farthest));
}

}  // namespace

Lens::Table::Table(Store& values, const std::string& name)
    : active(values, member(name, "TableActive")),
      inverse(values, member(name, "Inverse")),
      first(values, member(name, "MinInterpolPos")),
      last(values, member(name, "MaxInterpolPos")),
      lower(values, member(name, "LowerBound")),
      upper(values, member(name, "UpperBound")),
      size(values, member(name, "ListSize")),
      flags(values, name, "TableEntryFlags"),
      axis(values, name, "EncoderValue"),
      value(values, name, "EngravedValue"),
      interpolated(values, name, "InterpolEngravedVal"),
      main(values, name, "PrimaryEngravedValueAsString"),
      sub(values, name, "SecondaryEngravedValueAsString") {}

void Lens::Table::show(const Scale& scale) {
    active.set(!scale.empty());
    size.set(static_cast<std::int32_t>(scale.size()));
    first.set(0);
    last.set(scale.empty() ? 0 : encoderLast);
    lower.set(0);
    upper.set(scale.empty() ? 0 : encoderLast);
    for (std::size_t row = 0; row < scale.size(); ++row) {
        const Engraving& line = scale[row];
        flags.setInteger(row, line.main.empty() ? inRange : inRange | numbered);
        axis.setInteger(row, static_cast<std::int32_t>(std::lround(line.position * encoderLast)));
        value.setReal(row, finite(line.value));
        interpolated.setReal(row, finite(line.value));
        main.setText(row, line.main);
        sub.setText(row, line.sub);
    }
}

Lens::Lens(Store& values, std::shared_ptr<FileTree> tree) : Module("lens", values), tree_(std::move(tree)) {
    const auto current = [this] {
        return model_ == nullptr ? 0 : static_cast<std::size_t>(model_ - lensModels().data()) + 1;
    };
    settingChoice(
        "lens", lensChoices(), [this](std::size_t choice) { put(choice == 0 ? nullptr : &lensModels()[choice - 1]); },
        current);
    hear(clear_, [this] {
        if (!clear_.take()) return;
        put(nullptr);
        activeFile_.set("");
    });
    hear(wantedFile_, [this] { loadFile(wantedFile_.get()); });
    hear(activeFile_, [this] { loadFile(activeFile_.get()); });
}

void Lens::factory() {
    confusion_.set(0.025F);
    for (const Flag* inverted : {&focusInverted_, &irisInverted_, &zoomInverted_}) inverted->set(false);
}

void Lens::powerUp() {
    put(nullptr);
}

void Lens::put(const LensModel* model) {
    model_ = model;
    programmed_.reset();
    if (model == nullptr) {
        showScales({}, {}, {}, {});
        describe("", "", "");
    } else {
        showScales(model->metres(), model->feet(), model->stops(), model->focalLengths());
        describe(model->label, "Orvo", model->serial);
    }
    zoomMinimum_.set(model != nullptr ? static_cast<float>(model->shortest) : 0);
    zoomMaximum_.set(model != nullptr ? static_cast<float>(model->longest) : 0);
    showValues();
}

void Lens::put(ProgrammedLens lens) {
    model_ = nullptr;
    programmed_ = std::move(lens);
    showScales(programmed_->metres(), programmed_->feet(), programmed_->stops(), programmed_->focalLengths());
    describe(programmed_->label, programmed_->brand, programmed_->serial);
    zoomMinimum_.set(static_cast<float>(programmed_->focalLengthAt(0)));
    zoomMaximum_.set(static_cast<float>(programmed_->focalLengthAt(1)));
    showValues();
}

void Lens::showScales(const Scale& metres, const Scale& feet, const Scale& stops, const Scale& lengths) {
    metres_.show(metres);
    feet_.show(feet);
    stops_.show(stops);
    lengths_.show(lengths);
}

void Lens::describe(const std::string& label, const std::string& brand, const std::string& serial) {
    const bool there = hasLens();
    for (const Flag* flag : {&described_, &textActive_, &meterFitted_}) flag->set(there);
    text_.set(label);
    brand_.set(brand);
    serial_.set(serial);
    camLensType_.set(there ? Model::CamLensType::Data : Model::CamLensType::None);
}

void Lens::loadFile(const std::string& name) {
    if (name.empty()) return;
    const auto file = tree_->resolve(name);
    notFound_.set(file.empty() || !std::ifstream(file));
    if (notFound_) return;
    const LensModel* model = knownLensIn(file);
    auto programmed = model == nullptr ? ProgrammedLens::load(file) : std::nullopt;
    invalidFile_.set(model == nullptr && !programmed);
    if (invalidFile_) return;
    if (programmed)
        put(std::move(*programmed));
    else
        put(model);
    activeFile_.set(name);
    recent_.remember(name);
}

std::optional<double> Lens::positionOf(double metres) const {
    if (programmed_) return programmed_->positionOfDistance(metres);
    if (model_ == nullptr) return std::nullopt;
    return model_->positionOfDistance(std::max(metres, model_->closest));
}

void Lens::tick(std::int64_t) {
    focusInvertedShown_.set(focusInverted_);
    irisInvertedShown_.set(irisInverted_);
    zoomInvertedShown_.set(zoomInverted_);
    showValues();
}

void Lens::showValues() {
    if (!hasLens()) {
        for (const Real* value : {&actFocus_, &near_, &far_}) value->set(0);
        actIris_.set(0);
        focalLength_.set(0);
        return;
    }
    const auto read = [this](const auto& lens) {
        showReading(lens.distanceAt(static_cast<double>(focusAt_.get())),
                    lens.stopAt(static_cast<double>(irisAt_.get())),
                    lens.focalLengthAt(static_cast<double>(zoomAt_.get())));
    };
    if (programmed_)
        read(*programmed_);
    else
        read(*model_);
}

void Lens::showReading(double distance, double stop, double length) {
    actFocus_.set(finite(distance));
    actIris_.set(static_cast<std::int32_t>(std::lround(stop * 100)));
    focalLength_.set(static_cast<std::int32_t>(std::lround(length)));
    if (stop > 0) {
        showDepthOfField(distance, length, stop);
        return;
    }
    near_.set(0);  // nobody knows the iris
    far_.set(0);
}

void Lens::showDepthOfField(double metres, double millimetres, double stop) {
    // The classic thin lens: H = f^2 / (N c) + f; near = s (H - f) / (H + s - 2f), far = s (H - f) / (H - s).
    const double f = millimetres / 1000;
    const double c = std::max(0.001, static_cast<double>(confusion_.get())) / 1000;
    const double hyperfocal = f * f / (stop * c) + f;
    const double s = std::min(metres, farthest);
    near_.set(finite(s * (hyperfocal - f) / (hyperfocal + s - 2 * f)));
    far_.set(s >= hyperfocal ? static_cast<float>(farthest) : finite(s * (hyperfocal - f) / (hyperfocal - s)));
}

}  // namespace Unit
