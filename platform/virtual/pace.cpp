#include "platform/virtual/pace.h"

#include <linux/futex.h>
#include <signal.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "platform/virtual/virtual.h"

namespace Platform::Virtual {

namespace {

std::int64_t hostClock() {
    timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

void wait(std::atomic<std::uint32_t>& word, std::uint32_t seen, std::int64_t nanoseconds) {
    const timespec timeout = {static_cast<time_t>(nanoseconds / 1'000'000'000),
                              static_cast<long>(nanoseconds % 1'000'000'000)};
    ::syscall(SYS_futex, &word, FUTEX_WAIT, seen, &timeout, nullptr, 0);
}

void wake(std::atomic<std::uint32_t>& word) {
    ::syscall(SYS_futex, &word, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

bool isAlive(std::uint32_t process) {
    return process != 0 && (::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM);
}

bool inLockstep(const ControlBlock& block) {
    return block.pace.load() == static_cast<std::uint32_t>(Pace::Lockstep);
}

/// Waits for the grant that lies ahead of the arrivals. Ends lockstep when its driver is gone.
void endLockstepFrame(ControlBlock& block) {
    constexpr std::int64_t look = 1'000'000'000;
    const std::uint32_t frame = block.arrived.fetch_add(1) + 1;
    wake(block.arrived);
    while (inLockstep(block)) {
        const std::uint32_t granted = block.granted.load();
        if (static_cast<std::int32_t>(granted - frame) >= 0) return;
        wait(block.granted, granted, look);
        if (!isAlive(block.driver.load())) {
            block.stale = 1;
            block.pace = static_cast<std::uint32_t>(Pace::Free);
        }
    }
}

void endFreeFrame() {
    const std::int64_t next = (hostClock() / framePeriod + 1) * framePeriod;
    const timespec until = {static_cast<time_t>(next / 1'000'000'000), static_cast<long>(next % 1'000'000'000)};
    ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until,
                      nullptr);  // a signal ends the wait early, as in the kernel
}

}  // namespace

void endFrame() {
    ControlBlock& block = control();
    block.program = static_cast<std::uint32_t>(::getpid());
    inLockstep(block) ? endLockstepFrame(block) : endFreeFrame();
}

std::int64_t now() {
    return inLockstep(control()) ? control().clock.load() : hostClock();
}

void enterLockstep() {
    ControlBlock& block = control();
    block.driver = static_cast<std::uint32_t>(::getpid());
    block.clock = hostClock();
    block.granted = block.arrived.load();
    block.stale = 0;
    block.pace = static_cast<std::uint32_t>(Pace::Lockstep);
}

void leaveLockstep() {
    control().pace = static_cast<std::uint32_t>(Pace::Free);
    wake(control().granted);
}

bool waitForArrival(std::uint32_t count, int timeoutMs) {
    ControlBlock& block = control();
    const std::int64_t end = hostClock() + std::int64_t{timeoutMs} * 1'000'000;
    for (;;) {
        const std::uint32_t arrived = block.arrived.load();
        if (static_cast<std::int32_t>(arrived - count) >= 0) return true;
        const std::int64_t rest = end - hostClock();
        if (rest <= 0) return false;
        wait(block.arrived, arrived, rest < 50'000'000 ? rest : 50'000'000);
        if (block.program.load() != 0 && !isAlive(block.program.load())) return false;
    }
}

bool step(std::int64_t nanoseconds, int timeoutMs) {
    ControlBlock& block = control();
    block.clock += nanoseconds;
    const std::uint32_t frame = block.granted.load() + 1;
    // The program stands at the end of frame `granted`; with one more it runs the next and arrives again.
    block.granted = frame;
    wake(block.granted);
    return waitForArrival(frame + 1, timeoutMs);
}

}  // namespace Platform::Virtual
