#include "tests/board/guest/expect.h"

#include <time.h>

namespace Board {

void expect(bool holds, const std::string& otherwise) {
    if (!holds) throw Failure(otherwise);
}

void expectBetween(const std::string& what, long long found, long long least, long long most) {
    const std::string wanted =
        least == most ? std::to_string(least) : std::to_string(least) + " to " + std::to_string(most);
    expect(found >= least && found <= most, what + ": expected " + wanted + ", found " + std::to_string(found));
}

double now() {
    timespec time;
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void sleepFor(double seconds) {
    const auto whole = static_cast<time_t>(seconds);
    const timespec time = {whole, static_cast<long>((seconds - static_cast<double>(whole)) * 1e9)};
    ::clock_nanosleep(CLOCK_MONOTONIC, 0, &time, nullptr);
}

bool waitUntil(double seconds, const std::function<bool()>& holds) {
    constexpr double nap = 0.002;
    const double end = now() + seconds;
    while (!holds()) {
        if (now() > end) return false;
        sleepFor(nap);
    }
    return true;
}

}  // namespace Board
