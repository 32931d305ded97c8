#include "unit/server/modules/distance.h"

#include <algorithm>
#include <cmath>

#include "model/catalogue/enums.h"
#include "unit/server/modules/lengths.h"

namespace Unit {

using Model::DistanceState;
using Model::DmdSource;
using Model::DmdType;

namespace {

constexpr double nearest = 0.2, farthest = 40;  // metres that the devices can read
constexpr double secondBugOffset = 0.05;        // metres that the two devices are apart
constexpr double editStep = 0.1;                // metres
constexpr float noMark = -1;

constexpr std::int32_t number(auto value) {
    return static_cast<std::int32_t>(value);
}

}  // namespace

Distance::Range::Range(Store& values, const std::string& name, const std::string& commitName,
                       const std::string& validName, const std::string& iconName)
    : lower(values, "VarFocusBugLower" + name),
      upper(values, "VarFocusBugUpper" + name),
      lowerSet(values, "VarFocusBugLower" + name + "Set"),
      upperSet(values, "VarFocusBugUpper" + name + "Set"),
      active(values, "VarFocusBug" + name + "Active"),
      activeSet(values, "VarFocusBug" + name + "ActiveSet"),
      valid(values, "VarFocusBug" + validName + "Valid"),
      clear(values, "VarFocusBugClear" + validName),
      commit(values, "VarFocusBugCommit" + commitName),
      lowerText(values, "VarFocusBugUILower" + name),
      upperText(values, "VarFocusBugUIUpper" + name),
      icon(values, "VarFocusBug" + iconName + "Icon") {}

bool Distance::Range::contains(double metres) const {
    return metres >= static_cast<double>(lower.get()) && metres <= static_cast<double>(upper.get());
}

void Distance::Range::put() {
    if (!(lowerSet.get() >= 0) || !(upperSet.get() > lowerSet.get())) return;
    lower.set(lowerSet.get());
    upper.set(upperSet.get());
    valid.set(true);
}

void Distance::Range::drop() const {
    for (const Flag* flag : {&active, &activeSet, &valid}) flag->set(false);
    for (const Real* limit : {&lower, &upper, &lowerSet, &upperSet}) limit->set(0);
}

Distance::Reading::Reading(Store& values, const std::string& name)
    : state(values, name == "VarCtm" ? "VarCtmState" : name + "State"),
      metres(values, name == "VarCtm" ? "VarCtmDistanceMeter" : name + "Meter"),
      feet(values, name == "VarCtm" ? "VarCtmDistanceFeet" : name + "Feet"),
      inches(values, name == "VarCtm" ? "VarCtmDistanceInch" : name + "Inch") {}

void Distance::Reading::show(std::int32_t newState, double distance) const {
    const bool reads = newState == number(DistanceState::Valid) || newState == number(DistanceState::OutOfRange);
    const double rounded = reads ? std::round(distance * 100) / 100 : 0;
    const auto imperial = feetAndInches(rounded);
    state.set(newState);
    metres.set(static_cast<float>(rounded));
    feet.set(imperial.feet);
    inches.set(imperial.inches);
}

Distance::Distance(Store& values, std::function<std::optional<double>(double metres)> positionOf)
    : Module("distance", values),
      positionOf_(std::move(positionOf)),
      limits_(values, "Limit", "Limits", "Limits", "Limits"),
      lockout_(values, "Lockout", "Lockouts", "Lockout", "Lockout"),
      ctm_(values, "VarCtm"),
      first_(values, "VarFocusBugDistance1"),
      second_(values, "VarFocusBugDistance2") {
    settingFlag(
        "ctm", [this](bool there) { ctmThere_ = there; }, [this] { return ctmThere_; });
    settingNumber(
        "focusbugs", 0, 2, [this](double count) { bugs_.set(static_cast<std::int32_t>(count)); },
        [this] { return static_cast<double>(bugs_.get()); });
    settingNumber(
        "subject", 0, 1000, [this](double metres) { subject_ = metres; }, [this] { return subject_; });
    mirrorSettings();
    listenToRange(limits_);
    listenToRange(lockout_);
    listenToMarks();
    listenToEditing();
    hear(nextPlace_, [this] {
        if (nextPlace_.take()) nextSource();
    });
    hear(nextSource_, [this] {
        if (nextSource_.take()) nextSource();
    });
    hear(switchRequest_, [this] {
        const std::int32_t wanted = switchRequest_.take();
        if (wanted == number(Model::FocusBugSwitch::NextSource)) nextSource();
        if (wanted == number(Model::FocusBugSwitch::NextFieldOfView)) nextFieldOfView();
    });
}

// The devices take over at once what they are asked for.
void Distance::mirrorSettings() {
    const auto named = [](const std::string& name) { return std::pair(name + "Set", name); };
    for (const char* name : {"VarDmdType1", "VarDmdType2", "VarFocusBugFieldOfView", "VarFocusBugSensitivity"}) {
        const auto [set, act] = named(name);
        numbers_.emplace_back(Number(store, set), Number(store, act));
    }
    for (const char* name : {"VarFocusBugPlaneOffset", "VarFocusBugCrossoverDistance"}) {
        const auto [set, act] = named(name);
        reals_.emplace_back(Real(store, set), Real(store, act));
    }
    for (const char* name : {"VarFocusBugSyncMode", "VarFocusBugCrossoverMode", "VarFocusBugDualMode"}) {
        const auto [set, act] = named(name);
        flags_.emplace_back(Flag(store, set), Flag(store, act));
    }
    const auto follow = [this](const auto& pairs) {
        for (const auto& [set, act] : pairs) hear(set, [set, act] { act.set(set.get()); });
    };
    follow(numbers_);
    follow(reals_);
    follow(flags_);
    const auto& dual = flags_.back();
    hear(dual.first, [this, dual] {
        if (bugs_.get() < 2) dual.second.set(false);  // it takes two
    });
}

void Distance::listenToRange(Range& range) {
    hear(range.commit, [&range] {
        if (range.commit.take()) range.put();
    });
    hear(range.clear, [&range] {
        if (range.clear.take()) range.drop();
    });
    hear(range.activeSet, [&range] {
        range.active.set(range.activeSet && range.valid);
        range.activeSet.set(range.active);
    });
}

void Distance::listenToMarks() {
    for (int i = 0; i < 8; ++i) marks_.emplace_back(store, "VarFocusBugMarkerValue" + std::to_string(i));
    hear(clearMark_, [this] {
        const std::int32_t index = clearMark_.take(-1);
        if (index >= 0 && static_cast<std::size_t>(index) < marks_.size())
            marks_[static_cast<std::size_t>(index)].set(noMark);
    });
    hear(clearMarks_, [this] {
        if (!clearMarks_.take()) return;
        for (const Real& mark : marks_) mark.set(noMark);
    });
}

// One length is edited at a time; metres, feet and inches say the same.
void Distance::listenToEditing() {
    const auto put = [this](double metres) {
        const auto imperial = feetAndInches(std::max(0.0, metres));
        editMetres_.set(static_cast<float>(std::clamp(metres, 0.0, farthest)));
        editFeet_.set(imperial.feet);
        editInches_.set(static_cast<std::int32_t>(imperial.inches));
    };
    hear(more_, [this, put] {
        if (more_.take()) put(static_cast<double>(editMetres_.get()) + editStep);
    });
    hear(less_, [this, put] {
        if (less_.take()) put(static_cast<double>(editMetres_.get()) - editStep);
    });
    hear(editConfirm_, [this, put] {
        if (!editConfirm_.take()) return;
        if (displayUnit_.is(Model::LengthUnit::Feet))
            put((editFeet_.get() + editInches_.get() / 12.0) * metresPerFoot);
        else
            put(static_cast<double>(editMetres_.get()));
    });
}

void Distance::factory() {
    damping_.set(5);
}

void Distance::powerUp() {
    ctmThere_ = false;
    bugs_.set(0);
    subject_ = smoothed_ = 3;
    activePlace_.set(1);
    for (const auto& [set, act] : numbers_) {
        const bool sensitivity = act.cell().minimum.form == Catalogue::Limit::Form::Fixed;
        for (const Number* one : {&set, &act}) one->set(sensitivity ? 50 : 0);
    }
    for (const auto& [set, act] : reals_)
        for (const Real* one : {&set, &act}) one->set(0);
    for (const auto& [set, act] : flags_)
        for (const Flag* one : {&set, &act}) one->set(false);
    for (const Range* range : {&limits_, &lockout_}) range->drop();
    for (const Real& mark : marks_) mark.set(noMark);
    clearMark_.set(-1);
    tracking_.set(false);
    tick(0);
}

bool Distance::connected(std::int32_t type) const {
    return (type == number(DmdType::Ctm) && ctmThere_) || (type == number(DmdType::FocusBug) && bugs_.get() > 0) ||
           (type == number(DmdType::FocusBugSecond) && bugs_.get() > 1);
}

void Distance::nextSource() {
    if (noSwitch_) return;
    activePlace_.set(activePlace_.get() == 1 ? 2 : 1);
    showSource();
}

void Distance::nextFieldOfView() {
    const std::int32_t last = number(Model::FocusBugFieldOfView::Wide);
    fieldOfViewSet_.set(fieldOfView_.get() >= last ? 0 : fieldOfView_.get() + 1);
    fieldOfView_.set(fieldOfViewSet_.get());
}

void Distance::tick(std::int64_t nanoseconds) {
    measure(static_cast<double>(nanoseconds) * 1e-9);
    showSource();
    showTexts();
}

void Distance::measure(double seconds) {
    // The more damping, the slower the reading follows.
    const double lag = 0.02 + 0.04 * damping_.within(0, 25);
    smoothed_ += (subject_ - smoothed_) * (1 - std::exp(-seconds / lag));
    const auto stateAt = [](double metres) {
        return number(metres < nearest || metres > farthest ? DistanceState::NoTarget : DistanceState::Valid);
    };
    const auto bugState = [&](double metres) {
        const bool outside =
            (limits_.active && !limits_.contains(metres)) || (lockout_.active && lockout_.contains(metres));
        return outside && stateAt(metres) == number(DistanceState::Valid) ? number(DistanceState::OutOfRange)
                                                                          : stateAt(metres);
    };
    const double first = subject_ + static_cast<double>(offset_.get()), second = first + secondBugOffset;
    ctm_.show(ctmThere_ ? stateAt(smoothed_) : number(DistanceState::Off), smoothed_);
    first_.show(bugs_.get() > 0 ? bugState(first) : number(DistanceState::Off), first);
    second_.show(bugs_.get() > 1 ? bugState(second) : number(DistanceState::Off), second);
    limits_.icon.set(bugs_.get() > 0 && limits_.active);
    lockout_.icon.set(bugs_.get() > 0 && lockout_.active);
}

std::optional<double> Distance::measured(std::int32_t type) const {
    const Reading* reading = type == number(DmdType::Ctm)              ? &ctm_
                             : type == number(DmdType::FocusBug)       ? &first_
                             : type == number(DmdType::FocusBugSecond) ? &second_
                                                                       : nullptr;
    if (reading == nullptr || !connected(type) || !reading->state.is(DistanceState::Valid)) return std::nullopt;
    return static_cast<double>(reading->metres.get());
}

void Distance::showSource() {
    // A place that nobody has chosen for takes what is there.
    const Number* places[] = {&type1_, &type2_};
    std::int32_t candidates[] = {number(DmdType::Ctm), number(DmdType::FocusBug), number(DmdType::FocusBugSecond)};
    for (const Number* place : places) {
        if (connected(place->get())) continue;
        const std::int32_t other = place == &type1_ ? type2_.get() : type1_.get();
        const auto* free =
            std::ranges::find_if(candidates, [&](auto type) { return type != other && connected(type); });
        place->set(free != std::end(candidates) ? *free : number(DmdType::None));
    }
    noSwitch_.set(!connected(type1_.get()) || !connected(type2_.get()));
    const bool second = noSwitch_ ? connected(type2_.get()) && !connected(type1_.get()) : activePlace_.get() == 2;
    activePlace_.set(second ? 2 : 1);
    const std::int32_t active = places[activePlace_.get() - 1]->get();
    top_.set(active);
    bottom_.set(places[2 - activePlace_.get()]->get());
    source_.set(!connected(active)               ? DmdSource::None
                : active == number(DmdType::Ctm) ? DmdSource::Ctm
                                                 : DmdSource::FocusBug);
    const auto place = [this](std::int32_t type) {
        const auto metres = measured(type);
        const auto position = metres ? positionOf_(*metres) : std::nullopt;
        return position ? std::optional(static_cast<float>(std::clamp(*position, 0.0, 1.0))) : std::nullopt;
    };
    place1_.set(place(type1_.get()).value_or(0));
    place2_.set(place(type2_.get()).value_or(0));
    const auto position = place(active);
    target_.set(position.value_or(0));
    if (tracking_ && position) focus_.set(*position);
}

void Distance::showTexts() {
    const auto style = displayUnit_.is(Model::LengthUnit::Feet) ? LengthStyle::Feet : LengthStyle::Metres;
    const auto text = [style](const Real& metres) { return lengthText(static_cast<double>(metres.get()), style); };
    for (const Range* range : {&limits_, &lockout_}) {
        range->lowerText.set(range->valid ? text(range->lower) : "");
        range->upperText.set(range->valid ? text(range->upper) : "");
    }
    offsetText_.set(text(offset_));
    crossoverText_.set(text(crossover_));
    morePossible_.set(static_cast<double>(editMetres_.get()) < farthest);
    lessPossible_.set(editMetres_.get() > 0);
}

}  // namespace Unit
