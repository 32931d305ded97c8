#include "unit/server/modules/rings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>

#include "model/catalogue/enums.h"
#include "unit/server/modules/optics.h"

namespace Unit {

namespace fs = std::filesystem;

using Model::CustomRingAction;
using Model::LastCommandResult;

namespace {

constexpr double uploadTime = 3;  // seconds
constexpr double reach = 0.015;   // of the knob's travel: this near to a mark is on it
constexpr const char* drawingFolder = "Orvo/Tern/RINGS";

}  // namespace

Rings::MarkTable::MarkTable(Store& values, const std::string& name)
    : count(values, name + "Size"),
      position(values, name, "HandWheelValue"),
      main(values, name, "PrimaryRingValueAsString"),
      sub(values, name, "SecondaryRingValueAsString"),
      value(values, name, "RingValue"),
      flags(values, name, "Flags"),
      index(values, name, "Index") {}

void Rings::MarkTable::show(const RingFile& ring, const std::vector<RingFile::Mark>& marks, std::size_t first) const {
    std::size_t row = 0;
    for (; row < position.rows() && first + row < marks.size(); ++row) {
        const RingFile::Mark& mark = marks[first + row];
        position.setReal(row, static_cast<float>(mark.position));
        main.setText(row, ring.main(mark));
        sub.setText(row, ring.sub(mark));
        value.setReal(row, static_cast<float>(mark.value));
        flags.setInteger(row, 1);
        index.setInteger(row, static_cast<std::int32_t>(first + row));
    }
    count.set(static_cast<std::int32_t>(row));
}

Rings::Rings(Store& values, std::shared_ptr<FileTree> tree)
    : Module("rings", values),
      tree_(std::move(tree)),
      around_(values, "VarRingTableValueList"),
      grab_(values, "VarRingGrabTableValueList"),
      majorMarks_(values, "VarSvgMajorValueList"),
      minorMarks_(values, "VarSvgMinorValueList") {
    settingChoice(
        "ring", {"none", "metres", "feet", "iris"},
        [this](std::size_t choice) { putFixed(static_cast<Fixed>(choice)); },
        [this] { return static_cast<std::size_t>(fixed_); });
    listenToProgramming();
    listenToFiles();
}

void Rings::listenToProgramming() {
    for (const Flag* mode : {&active_, &editing_}) hear(*mode, [this] { begin(); });
    hear(press_, [this] {
        if (press_.take()) addOrRemove();
    });
    hear(commit_, [this] {
        if (commit_.take()) commitEdit();
    });
    hear(more_, [this] {
        if (more_.take()) proposeNext(1);
    });
    hear(less_, [this] {
        if (less_.take()) proposeNext(-1);
    });
    hear(moveStart_, [this] {
        if (!moveStart_.take() || near() == ring_.marks.end()) return;
        moving_ = near()->value;
        moves_.set(true);
    });
    hear(moveStop_, [this] {
        if (!moveStop_.take()) return;
        moving_ = -1;
        moves_.set(false);
    });
    for (const Number* header : {&axis_, &unit_}) hear(*header, [this] { showMarks(); });
}

void Rings::listenToFiles() {
    hear(actionStart_, [this] {
        if (actionStart_.get()) act();
        actionStart_.set(false);
    });
    hear(clear_, [this] {
        if (!clear_.take()) return;
        custom_.set(false);
        activeFile_.set("");
    });
    hear(activeFile_, [this] { loadFile(activeFile_.get()); });
    hear(fileName_, [this] { checkName(); });
    hear(accept_, [this] {
        if (accept_.take()) saveFile();
    });
    for (const Flag* start : {&upload_, &uploadFile_})
        hear(*start, [this, start] {
            if (start->get()) startUpload();
        });
    hear(cancel_, [this] {
        if (cancel_.take() && uploading_ >= 0) endUpload(false);
    });
    hear(draw_, [this] {
        if (draw_.take()) exportDrawing();
    });
    hear(export_, [this] {
        if (export_.take()) exportDrawing();
    });
    hear(import_, [this] {
        if (import_.take()) importFiles();
    });
}

void Rings::powerUp() {
    ring_ = RingFile();
    uploading_ = moving_ = -1;
    for (const Flag* flag : {&active_, &editing_, &saved_, &done_, &upload_, &uploadFile_, &invalid_, &invalidMark_,
                             &checkDone_, &overwrite_, &moves_, &drawing_})
        flag->set(false);
    if (!activeFile_.get().empty()) loadFile(activeFile_.get());
    putFixed(Fixed::None);
    showMarks();
}

// The ring with printed marks that is on the knob.

void Rings::putFixed(Fixed ring) {
    fixed_ = ring;
    showFixed();
}

void Rings::showFixed() {
    const bool read = fixed_ != Fixed::None && detect_;
    fixedNone_.set(!read);
    fixedValid_.set(read);
    // The nearest distance that the ring is made for, and the stops of the one for the iris (in hundredths).
    fixedMetres_.set(read && fixed_ == Fixed::Metres ? 0.6F : 0);
    fixedFeet_.set(read && fixed_ == Fixed::Feet ? 2 : 0);
    fixedInches_.set(0);
    fixedOpen_.set(read && fixed_ == Fixed::Iris ? 140 : 0);
    fixedEnd_.set(read && fixed_ == Fixed::Iris ? 2200 : 0);
}

// Programming.

void Rings::begin() {
    done_.set(false);
    saved_.set(false);
    invalidMark_.set(false);
    moving_ = -1;
    if (active_ && !editing_) {
        ring_ = RingFile();
        major_.set(1);
        minor_.set(0);
    }
    showMarks();
}

double Rings::shownValue() const {
    const bool feet = axis_.is(Model::RingProgrammingAxis::Focus) && unit_.is(Model::LengthUnit::Feet);
    return static_cast<double>(major_.get()) + static_cast<double>(minor_.get()) / (feet || inches_ ? 12 : 100);
}

std::vector<RingFile::Mark>::iterator Rings::near() {
    return std::ranges::find_if(ring_.marks,
                                [at = knob()](const auto& mark) { return std::abs(mark.position - at) < reach; });
}

void Rings::addOrRemove() {
    if (!active_ && !editing_) return;
    if (const auto mark = near(); mark != ring_.marks.end()) {
        ring_.marks.erase(mark);
    } else {
        const RingFile::Mark made = {knob(), shownValue()};
        const auto crosses = [&made](const auto& one) {
            return (one.position < made.position) != (one.value < made.value);
        };
        invalidMark_.set(!(made.value > 0) || std::ranges::any_of(ring_.marks, crosses));
        if (invalidMark_ || ring_.marks.size() >= RingFile::mostMarks) return;
        const auto behind =
            std::ranges::find_if(ring_.marks, [&made](const auto& one) { return one.position > made.position; });
        ring_.marks.insert(behind, made);
        proposeNext(1);
    }
    showMarks();
}

void Rings::commitEdit() {
    major_.set(editMajor_.get());
    minor_.set(editMinor_.get());
    if (const auto mark = near(); mark != ring_.marks.end()) {
        const double wanted = shownValue();
        const bool rises = (mark == ring_.marks.begin() || (mark - 1)->value < wanted) &&
                           (mark + 1 == ring_.marks.end() || (mark + 1)->value > wanted);
        invalidMark_.set(!rises);
        if (rises) mark->value = wanted;
    }
    showMarks();
}

void Rings::proposeNext(int direction) {
    const auto values = axis_.is(Model::RingProgrammingAxis::Iris)   ? engravedStops()
                        : axis_.is(Model::RingProgrammingAxis::Zoom) ? engravedLengths()
                        : unit_.is(Model::LengthUnit::Feet)          ? engravedFeet()
                                                                     : engravedMetres();
    const double now = shownValue();
    constexpr double hair = 1e-4;
    double next = now;
    if (direction > 0) {
        const auto above = std::ranges::find_if(values, [now](double value) { return value > now + hair; });
        if (above != values.end()) next = *above;
    } else {
        for (const double value : values)
            if (value < now - hair) next = value;
    }
    const bool feet = axis_.is(Model::RingProgrammingAxis::Focus) && unit_.is(Model::LengthUnit::Feet);
    major_.set(static_cast<float>(std::floor(next + hair)));
    minor_.set(static_cast<float>(std::round((next - std::floor(next + hair)) * (feet ? 12 : 100))));
    showMarks();
}

void Rings::tick(std::int64_t nanoseconds) {
    showFixed();
    const bool stick = usb_.is(Model::UsbState::Mounted);
    importPossible_.set(stick);
    exportPossible_.set(stick && custom_);
    if (moving_ >= 0)
        for (std::size_t i = 0; i < ring_.marks.size(); ++i) {
            const double low = i > 0 ? ring_.marks[i - 1].position + reach : 0;
            const double high = i + 1 < ring_.marks.size() ? ring_.marks[i + 1].position - reach : 1;
            if (ring_.marks[i].value == moving_ && low <= high) ring_.marks[i].position = std::clamp(knob(), low, high);
        }
    showMarks();
    showDrawing();
    if (uploading_ < 0) return;
    uploading_ += static_cast<double>(nanoseconds) * 1e-9;
    progress_.set(static_cast<float>(std::min(100.0, uploading_ / uploadTime * 100)));
    if (uploading_ >= uploadTime) endUpload(true);
}

void Rings::showMarks() {
    ring_.axis = axis_.within(0, 3);
    ring_.imperial = unit_.is(Model::LengthUnit::Feet);
    ring_.leftHanded = leftHand_;
    const auto mark = near();
    added_.set(mark != ring_.marks.end());
    full_.set(ring_.marks.size() >= RingFile::mostMarks);
    morePossible_.set(active_ || editing_);
    lessPossible_.set((active_ || editing_) && shownValue() > 0);
    const auto ahead = std::ranges::find_if(ring_.marks, [this](const auto& one) { return one.position >= knob(); });
    const auto centre = static_cast<std::size_t>(ahead - ring_.marks.begin());
    for (const MarkTable* table : {&around_, &grab_}) {
        const std::size_t rows = table->position.rows();
        const std::size_t last = ring_.marks.size() > rows ? ring_.marks.size() - rows : 0;
        table->show(ring_, ring_.marks, std::min(centre > rows / 2 ? centre - rows / 2 : 0, last));
    }
}

// Files.

fs::path Rings::fileOf(const std::string& name) const {
    return tree_->internal() / "rings" / (name + ".ring");
}

void Rings::loadFile(const std::string& name) {
    if (name.empty()) return;
    auto loaded = RingFile::load(tree_->resolve(name));
    invalid_.set(!loaded);
    if (!loaded) return;
    ring_ = std::move(*loaded);
    axis_.set(ring_.axis);
    unit_.set(ring_.imperial ? Model::LengthUnit::Feet : Model::LengthUnit::Meter);
    leftHand_.set(ring_.leftHanded);
    ringName_.set(ring_.name);
    activeFile_.set(name);
    custom_.set(true);
    recent_.remember(name);
    showMarks();
}

void Rings::act() {
    switch (static_cast<CustomRingAction>(action_.get())) {
        case CustomRingAction::Load: loadFile(activeFile_.get()); break;
        case CustomRingAction::Edit: editing_.set(custom_); break;
        case CustomRingAction::Upload: startUpload(); break;
        case CustomRingAction::Export: exportDrawing(); break;
        case CustomRingAction::Import: importFiles(); break;
        case CustomRingAction::Delete: {
            std::error_code ignored;
            const fs::path file = tree_->resolve(activeFile_.get());
            if (!file.empty() && fs::is_regular_file(file, ignored)) fs::remove(file, ignored);
            custom_.set(false);
            activeFile_.set("");
            break;
        }
        case CustomRingAction::None: break;
    }
    action_.set(CustomRingAction::None);
}

void Rings::checkName() {
    saved_.set(false);
    overwrite_.set(FileTree::isPlainName(fileName_.get()) && fs::exists(fileOf(fileName_.get())));
    checkDone_.set(true);
    checkDone_.note();
}

void Rings::saveFile() {
    const std::string name = fileName_.get();
    if (!FileTree::isPlainName(name)) return;
    ring_.name = ringName_.get().empty() ? name : ringName_.get();
    std::error_code ignored;
    fs::create_directories(fileOf(name).parent_path(), ignored);
    if (!ring_.save(fileOf(name))) return;
    overwrite_.set(false);
    checkDone_.set(false);
    activeFile_.set(tree_->nameOf(fileOf(name)));
    custom_.set(true);
    recent_.remember(activeFile_.get());
    saved_.set(true);
    saved_.note();
}

// The ring's chip.

void Rings::startUpload() {
    uploading_ = 0;
    done_.set(false);
    progress_.set(0);
    result_.set(LastCommandResult::Running);
}

void Rings::endUpload(bool good) {
    uploading_ = -1;
    upload_.set(false);
    uploadFile_.set(false);
    progress_.set(0);
    done_.set(good);
    result_.set(good ? LastCommandResult::Succeeded : LastCommandResult::None);
}

// The drawing.

RingDrawingStyle Rings::style() const {
    const auto number = [this](const char* name) {
        return static_cast<double>(Real(store, std::string("VarSvgExport") + name).get());
    };
    return {.majorLength = number("MajorLineLength"),
            .majorThickness = number("MajorLineThickness"),
            .minorLength = number("MinorLineLength"),
            .minorThickness = number("MinorLineThickness"),
            .textX = number("MajorValuePosX"),
            .textY = number("MajorValuePosY")};
}

void Rings::showDrawing() {
    if (!drawing_) return;
    majorMarks_.show(ring_, ring_.marks, 0);
    minorMarks_.show(ring_, minorMarks(ring_), 0);
}

void Rings::exportDrawing() {
    const auto refuse = [this](const char* why) {
        result_.set(LastCommandResult::Report);
        resultText_.set(why);
    };
    if (!usb_.is(Model::UsbState::Mounted)) return refuse("There is no USB stick.");
    if (ring_.marks.empty()) return refuse("The ring has no marks.");
    const std::string name = FileTree::isPlainName(ring_.name) ? ring_.name : "RING";
    std::error_code failed;
    fs::create_directories(tree_->usb() / drawingFolder, failed);
    std::ofstream stream(tree_->usb() / drawingFolder / (name + ".svg"));
    stream << drawRing(ring_, style());
    stream.close();
    if (!stream) return refuse("The drawing cannot be written to the USB stick.");
    result_.set(LastCommandResult::Succeeded);
}

void Rings::importFiles() {
    if (!usb_.is(Model::UsbState::Mounted)) return;
    std::error_code failed;
    fs::create_directories(tree_->internal() / "rings", failed);
    for (const auto& entry : fs::directory_iterator(tree_->usb() / "rings", failed))
        if (entry.is_regular_file() && RingFile::load(entry.path()))
            fs::copy_file(entry.path(), tree_->internal() / "rings" / entry.path().filename(), failed);
    result_.set(LastCommandResult::Succeeded);
}

}  // namespace Unit
