#include "unit/server/modules/clips.h"

#include <algorithm>
#include <cstdio>

#include "model/catalogue/enums.h"

namespace Unit {

using Model::CamClipPlaybackSpeed;
using Model::CamState;

namespace {

constexpr double loadingTime = 1.0;
constexpr double fastFactor = 8, forwardFactor = 2;
constexpr double takesOnMedium[] = {12, 95, 4, 31};  // seconds of the clips that are there already
constexpr int firstHour = 10;                        // of the time code

std::string clock(double seconds, bool hours) {
    const auto whole = static_cast<int>(seconds);
    char text[24];
    if (hours)
        std::snprintf(text, sizeof text, "%02d:%02d:%02d:00", whole / 3600 % 24, whole / 60 % 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%02d:%02d", whole / 60 % 100, whole % 60);
    return text;
}

double secondsOf(const std::string& length) {
    int minutes = 0, seconds = 0;
    return std::sscanf(length.c_str(), "%d:%d", &minutes, &seconds) == 2 ? minutes * 60 + seconds : 0;
}

std::string member(int number, const char* what) {
    return "VarCamClipList" + std::to_string(number) + what;
}

}  // namespace

Clips::Medium::Medium(Store& values, int number)
    : name(values, member(number, "MediumName")),
      size(values, member(number, "Size")),
      enabled(values, member(number, "EnabledFlags")),
      playable(values, member(number, ""), "CamClipPlayable"),
      rate(values, member(number, ""), "CamClipFramerate"),
      title(values, member(number, ""), "CamClipName"),
      timecode(values, member(number, ""), "CamClipTimeCode"),
      length(values, member(number, ""), "CamClipLength"),
      codec(values, member(number, ""), "CamClipCodec") {}

Clips::Clips(Store& values) : Module("clips", values) {
    for (std::size_t i = 0; i < mediaCount; ++i) media_.emplace_back(values, static_cast<int>(i));
    settingNumber(
        "media", 0, mediaCount, [this](double count) { insert(static_cast<std::size_t>(count)); },
        [this] { return static_cast<double>(inserted_); });
    hear(choose_, [this] {
        if (choose_.take()) choose(wantedMedium_.get(), wantedClip_.get());
    });
    hear(previous_, [this] {
        if (previous_.take()) moveBy(-1);
    });
    hear(next_, [this] {
        if (next_.take()) moveBy(1);
    });
    hear(play_, [this] {
        if (play_.take()) togglePlay();
    });
    hear(stop_, [this] {
        if (stop_.take()) stop();
    });
    hear(speed_, [this] { setSpeed(); });
}

void Clips::powerUp() {
    inserted_ = 1;
    listed_ = false;
    loading_ = 0;
    take_ = -1;
    takes_ = 0;
    speed_.set(CamClipPlaybackSpeed::Pause);
    plays_.set(false);
}

bool Clips::present() const {
    return available_.is(Model::CamDataAvailable::Full) && inserted_ > 0;
}

void Clips::insert(std::size_t media) {
    inserted_ = media;
    loading_ = 0;
    clear();
}

void Clips::clear() {
    listed_ = false;
    number_.set(0);
    for (const Medium& medium : media_) {
        medium.size.set(0);
        medium.enabled.setFirst(0);
        medium.name.set("");
    }
}

void Clips::listClips() {
    clear();
    listed_ = present();
    takes_ = 0;
    number_.set(listed_ ? static_cast<std::int32_t>(inserted_) : 0);
    for (std::size_t i = 0; listed_ && i < inserted_; ++i) {
        media_[i].name.set("CARD " + std::to_string(i + 1));
        for (const double seconds : takesOnMedium) add(media_[i], seconds, seconds > 5);
    }
    choose(0, 0);
}

void Clips::add(Medium& medium, double seconds, bool playable) {
    const auto row = static_cast<std::size_t>(medium.clips());
    if (row >= medium.title.rows()) return;
    ++takes_;
    char title[24];
    std::snprintf(title, sizeof title, "A001C%03d", takes_);
    medium.title.setText(row, title);
    medium.timecode.setText(row, clock(firstHour * 3600 + takes_ * 300, true));
    medium.length.setText(row, clock(seconds, false));
    medium.codec.setText(row, codec_.get());
    medium.rate.setReal(row, frameRate_.get());
    medium.playable.setInteger(row, playable ? 1 : 0);
    medium.size.set(static_cast<std::int32_t>(row) + 1);
    medium.enabled.setFirst(row + 1);
}

const Clips::Medium& Clips::chosenMedium() const {
    const auto medium = static_cast<std::size_t>(std::max(0, medium_.get()));
    return media_[std::min(medium, media_.size() - 1)];
}

std::size_t Clips::chosenRow(const Medium& medium) const {
    return std::min(static_cast<std::size_t>(std::max(0, clip_.get())), medium.playable.rows() - 1);
}

void Clips::choose(std::int32_t medium, std::int32_t clip) {
    const auto count = std::min(std::max(1, number_.get()), static_cast<std::int32_t>(media_.size()));
    if (medium < 0 || medium >= count) return;
    const std::int32_t size = media_[static_cast<std::size_t>(medium)].clips();
    medium_.set(medium);
    clip_.set(std::clamp(clip, 0, std::max(1, size) - 1));
    played_ = 0;
    show();
}

void Clips::moveBy(std::int32_t clips) {
    choose(medium_.get(), clip_.within(0, 100'000) + clips);
}

void Clips::togglePlay() {
    if (!listed_ || !playable_ || state_.is(CamState::Recording)) return;
    const bool plays = state_.is(CamState::Playback);
    speed_.set(plays ? CamClipPlaybackSpeed::Pause : CamClipPlaybackSpeed::Play);
    setSpeed();
}

void Clips::setSpeed() {
    if (!listed_ || !playable_ || state_.is(CamState::Recording)) {
        speed_.set(CamClipPlaybackSpeed::Pause);
        return;
    }
    const bool pauses = speed_.is(CamClipPlaybackSpeed::Pause);
    state_.set(pauses ? CamState::Paused : CamState::Playback);
    plays_.set(!pauses);
}

void Clips::stop() {
    if (state_.is(CamState::Playback) || state_.is(CamState::Paused)) state_.set(CamState::Standby);
    speed_.set(CamClipPlaybackSpeed::Pause);
    plays_.set(false);
    played_ = 0;
}

void Clips::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    if (listed_ != present()) {
        loading_ = present() ? loading_ + seconds : loadingTime;
        progress_.set(present() ? static_cast<std::int32_t>(std::min(100.0, loading_ / loadingTime * 100)) : 0);
        if (loading_ >= loadingTime) listClips();
        if (!present()) loading_ = 0;
    }
    followRecording(seconds);
    if (plays_) play(seconds);
    show();
}

void Clips::followRecording(double seconds) {
    if (state_.is(CamState::Recording)) {
        take_ = std::max(0.0, take_) + seconds;
        plays_.set(false);
        speed_.set(CamClipPlaybackSpeed::Pause);
        return;
    }
    if (take_ >= 0 && listed_) {
        add(media_[0], take_, true);
        choose(0, media_[0].clips() - 1);
    }
    take_ = -1;
}

void Clips::play(double seconds) {
    const Medium& medium = chosenMedium();
    const double length = secondsOf(medium.length.text(chosenRow(medium)));
    switch (static_cast<CamClipPlaybackSpeed>(speed_.get())) {
        case CamClipPlaybackSpeed::Forward: played_ += forwardFactor * seconds; break;
        case CamClipPlaybackSpeed::FastForward: played_ += fastFactor * seconds; break;
        case CamClipPlaybackSpeed::Rewind: played_ -= forwardFactor * seconds; break;
        case CamClipPlaybackSpeed::FastRewind: played_ -= fastFactor * seconds; break;
        default: played_ += seconds; break;
    }
    if (played_ >= 0 && played_ < length) return;
    played_ = std::clamp(played_, 0.0, length);
    speed_.set(CamClipPlaybackSpeed::Pause);
    setSpeed();
}

void Clips::show() {
    const Medium& medium = chosenMedium();
    const bool some = listed_ && clip_.get() >= 0 && clip_.get() < medium.clips();
    last_.set(some && clip_.get() == medium.clips() - 1);
    playable_.set(some && medium.playable.integer(chosenRow(medium)) != 0);
    fastForward_.set(some);
    if (!listed_ && plays_) stop();
}

}  // namespace Unit
