#include "unit/ctl/record/minimise.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <set>

#include "platform/virtual/tape/replayer.h"
#include "platform/virtual/tape/tiles.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/record/scratchunit.h"
#include "unit/ctl/wholefile.h"

namespace Unit {

using Platform::Virtual::Event;
using Platform::Virtual::OnDifference;
using Platform::Virtual::Replayer;
using Kind = Platform::Virtual::Event::Kind;

namespace {

double steadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::vector<std::byte> readBytes(const std::string& file) {
    const std::string text = wholeFile(file);
    std::vector<std::byte> bytes(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return bytes;
}

/// Keeps of 0 to count-1 what `needed` cannot do without: takes away halves, then quarters, down to single ones.
std::set<std::size_t> reduce(std::size_t count, const std::function<bool(const std::set<std::size_t>&)>& needed,
                             const std::function<bool()>& timeLeft) {
    std::set<std::size_t> kept;
    for (std::size_t i = 0; i < count; ++i) kept.insert(kept.end(), i);
    for (std::size_t size = std::max<std::size_t>(count / 2, 1); !kept.empty(); size /= 2) {
        const std::vector<std::size_t> order(kept.begin(), kept.end());
        for (std::size_t start = 0; start < order.size() && timeLeft(); start += size) {
            auto fewer = kept;
            for (std::size_t i = start; i < std::min(start + size, order.size()); ++i) fewer.erase(order[i]);
            if (needed(fewer)) kept = std::move(fewer);
        }
        if (size <= 1) break;
    }
    return kept;
}

bool isCheck(const Event& event) {
    return event.kind == Kind::Picture || event.kind == Kind::Sent;
}

bool isInput(const Event& event) {
    return event.kind == Kind::Read || event.kind == Kind::Wait || event.kind == Kind::Memory;
}

}  // namespace

bool Minimiser::timeLeft() const {
    return steadySeconds() < end_;
}

Failure Minimiser::play(const Recording& recording, ReplayOutcome& outcome) const {
    const ScratchUnit unit("minimise");
    Replay replay({.gui = gui_, .place = unit.place(), .until = {}, .onDifference = OnDifference::Stop});
    outcome = replay.run(recording);
    Failure failure = {outcome.ended, outcome.words, outcome.hangs, false, {}};
    if (outcome.difference && outcome.otherPicture) {
        failure.otherPicture = true;
        failure.shown = readBytes(replay.file(Replayer::shownFile));
    }
    return failure;
}

void Minimiser::run(const std::string& file, double seconds) {
    end_ = steadySeconds() + seconds;
    file_ = file;
    ReplayOutcome outcome;
    failure_ = play(recording_, outcome);
    if (failure_ == Failure())
        throw Problem(recording_.file() + (outcome.difference
                                               ? " only sends other notices; there is no picture to look for."
                                               : " replays as it was recorded: there is nothing to look for."));
    cutToFailure(outcome);
    if (!fails(passes_))
        throw Problem("The failure of " + recording_.file() + " does not come again when only its frame is checked.");
    dropFrames();
    dropInputs();
    writeRecording(file, about_, passes_);
    report_(std::to_string(passes_.size() - 1) + " frames are left of " + std::to_string(recording_.frames()) +
            ", after " + std::to_string(tries_) + " tries" +
            (timeLeft() ? "." : ". There was no time for more: --seconds N"));
}

/// The passes up to the failing one without what they showed; of a wrong picture the last one knows the right one.
void Minimiser::cutToFailure(const ReplayOutcome& outcome) {
    about_ = recording_.tape().about;
    about_ += failure_.otherPicture ? "checked=last\n" : "checked=none\n";
    const std::uint64_t last = outcome.difference ? *outcome.difference : outcome.frames + 1;
    Event right;
    std::optional<Platform::Virtual::TiledPicture> picture;
    const auto& all = recording_.passes();
    for (std::size_t i = 0; i < all.size() && i <= last; ++i) {
        passes_.emplace_back();
        for (const Event& event : all[i]) {
            if (event.kind == Kind::Mode) picture = Platform::Virtual::TiledPicture::ofMode(event.data);
            if (event.kind == Kind::Picture) {
                right = event;
                if (picture && event.result != 0) picture->apply(event.data);
            }
            if (!isCheck(event)) passes_.back().push_back(event);
        }
    }
    if (!failure_.otherPicture) return;
    if (picture && right.result != 0) {
        Platform::Virtual::TiledPicture black(picture->width(), picture->height());
        black.become(picture->pixels().data(), picture_);
    }
    right.data = picture_;
    passes_.back().push_back(right);
    passes_.push_back({all[std::min(static_cast<std::size_t>(last) + 1, all.size() - 1)].front()});
    report_("Frame " + std::to_string(last) + " is the first that is wrong; what comes later goes.");
}

bool Minimiser::fails(const Passes& passes) {
    ++tries_;
    const std::string candidate = file_ + ".try";
    writeRecording(candidate, about_, passes);
    ReplayOutcome outcome;
    const bool same = play(Recording(candidate), outcome) == failure_;
    std::remove(candidate.c_str());
    return same;
}

// The start stays, and what the last frame is checked by.
void Minimiser::dropFrames() {
    const std::size_t tail = failure_.otherPicture ? 2 : 1;
    if (passes_.size() <= tail + 1) return;
    const auto with = [&](const std::set<std::size_t>& kept) {
        Passes fewer = {passes_.front()};
        for (const std::size_t i : kept) fewer.push_back(passes_[i + 1]);
        fewer.insert(fewer.end(), passes_.end() - static_cast<std::ptrdiff_t>(tail), passes_.end());
        return fewer;
    };
    const auto kept = reduce(
        passes_.size() - tail - 1, [&](const auto& some) { return fails(with(some)); }, [this] { return timeLeft(); });
    passes_ = with(kept);
    report_(std::to_string(passes_.size() - 1) + " frames are needed.");
}

void Minimiser::dropInputs() {
    std::vector<std::pair<std::size_t, std::size_t>> inputs;  // pass, event
    for (std::size_t pass = 1; pass < passes_.size(); ++pass)
        for (std::size_t i = 0; i < passes_[pass].size(); ++i)
            if (isInput(passes_[pass][i])) inputs.emplace_back(pass, i);
    const auto with = [&](const std::set<std::size_t>& kept) {
        Passes fewer = passes_;
        for (std::size_t i = inputs.size(); i-- > 0;)
            if (!kept.contains(i)) {
                auto& events = fewer[inputs[i].first];
                events.erase(events.begin() + static_cast<std::ptrdiff_t>(inputs[i].second));
            }
        return fewer;
    };
    const auto kept = reduce(
        inputs.size(), [&](const auto& some) { return fails(with(some)); }, [this] { return timeLeft(); });
    passes_ = with(kept);
    report_(std::to_string(kept.size()) + " inputs are needed of " + std::to_string(inputs.size()) + ".");
}

}  // namespace Unit
