#include "unit/server/server.h"

#include <algorithm>

#include "apps/common/log/log.h"
#include "model/catalogue/constants.h"
#include "platform/system.h"

namespace Unit {

namespace {

/// A machine that was asleep or stopped must not run through all the ticks it has missed.
constexpr std::int64_t longestTick = 250'000'000;

}  // namespace

Server::Server(const Surroundings& surroundings, Pace pace)
    : simulation_(areas_.bases(), surroundings),
      broker_(poll_, *this),
      control_(poll_, [this](std::string_view line) { return answer(line); }),
      hostile_(areas_, broker_, simulation_.store()),
      pace_(pace),
      lastTick_(Platform::steadyNanoseconds()) {
    broker_.setImmediate(pace == Pace::Free);
}

Server::~Server() {
    simulation_.save();
}

void Server::open() {
    simulation_.store().clearNotices();
    broker_.open();
    control_.open();
    gate_.open();
    TERN_LOG(Log::LogLight, "The server is ready");
}

void Server::run() {
    while (turn(pace_ == Pace::Free ? millisecondsToTick() : 1000)) {
    }
}

bool Server::turn(int limitMs) {
    const auto result = poll_.wait(limitMs);
    if (result == EventPoll::Stopped || EventPoll::stopRequested()) return false;
    if (pace_ == Pace::Free) {
        tickByClock();
        announceChanges();
        broker_.flush();
    }
    control_.flush();
    broker_.reap();
    control_.reap();
    return true;
}

int Server::millisecondsToTick() const {
    const std::int64_t left = lastTick_ + tickPeriod - Platform::steadyNanoseconds();
    return static_cast<int>(std::clamp<std::int64_t>((left + 999'999) / 1'000'000, 0, 17));
}

void Server::tickByClock() {
    const std::int64_t now = Platform::steadyNanoseconds();
    if (now < lastTick_ + tickPeriod) return;
    tick(std::min(now - lastTick_, longestTick));
    lastTick_ = now;
}

void Server::setPace(Pace pace) {
    pace_ = pace;
    broker_.setImmediate(pace == Pace::Free);
    lastTick_ = Platform::steadyNanoseconds();
}

void Server::tick(std::int64_t nanoseconds) {
    ++ticks_;
    if (awayTicks_ > 0 && --awayTicks_ == 0) {
        broker_.open();
        gate_.open();
    }
    simulation_.tick(nanoseconds);
    gate_.tick(nanoseconds);
    hostile_.tick();
    announceChanges();
    if (unsigned away = 0; hostile_.takeRestart(away)) closeForRestart(away);
}

void Server::closeForRestart(unsigned ticks) {
    gate_.close();
    broker_.close();
    awayTicks_ = std::max(ticks, 1U);
}

void Server::announceChanges() {
    Store& store = simulation_.store();
    for (const std::uint16_t id : store.notices()) {
        broker_.announce(id);
        if (control_.anyWatcher()) control_.tell("changed " + std::to_string(id));
    }
    store.clearNotices();
}

void Server::onNotice(const Notify& notice) {
    if (control_.anyWatcher()) control_.tell("sent " + std::to_string(notice.id));
    simulation_.changed(static_cast<std::uint16_t>(notice.id));
}

}  // namespace Unit
