#pragma once

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <cstdint>

namespace Platform::Virtual {

using FutexWord = std::atomic<std::uint32_t>;
static_assert(sizeof(FutexWord) == 4 && FutexWord::is_always_lock_free, "the kernel waits on a plain 32-bit word");

/// Sleeps while `word` holds `seen`, at most `milliseconds`. Returns 0 when woken, or -1 with EAGAIN (another value by
/// now), ETIMEDOUT or EINTR. The word may lie in memory shared with other processes.
inline int futexWait(FutexWord& word, std::uint32_t seen, int milliseconds) {
    const timespec limit = {milliseconds / 1000, (milliseconds % 1000) * 1'000'000L};
    return static_cast<int>(::syscall(SYS_futex, &word, FUTEX_WAIT, seen, &limit, nullptr, 0));
}

inline void futexWake(FutexWord& word) {
    ::syscall(SYS_futex, &word, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

}  // namespace Platform::Virtual
