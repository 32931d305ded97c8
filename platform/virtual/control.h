#pragma once

#include <linux/fb.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "platform/virtual/futex.h"

namespace Platform::Virtual {

/// The machine's steady clock in nanoseconds, which the instance's is made of.
inline std::int64_t machineTime() {
    timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

/// What an instance's processes share: the file "control" of its folder, mapped by each of them. The product uses it
/// through the seam, drivers through Driver. Zero-filled is a valid start but for the head and the screen.
///
/// Lockstep: while `vsyncHeld`, each wait for the vertical blank takes one of `permits`, and without one the product
/// sets `resting` to its process id and sleeps on `sequence`. Every change that may end the sleep increments `sequence`
/// and wakes it. A process that takes a permit clears `resting` first: whoever reads permits 0 and then a resting
/// process knows that the product has used up every step and waits for the next.
///
/// A hold lives as long as one of the drivers that have put it: each keeps a shared lock on a file of the hold. When
/// the last is gone without a word the waiting product lifts the hold itself, within half a second, and runs free.
struct ControlBlock {
    static constexpr std::uint32_t currentMagic = 0x4e524554;  // "TERN"
    static constexpr std::uint32_t currentVersion = 1;

    std::uint32_t magic;
    std::uint32_t version;

    // The display. The product writes `screen`; the offset that is shown stands in `yoffset` only.
    fb_var_screeninfo screen;
    std::atomic<std::uint32_t> yoffset;     ///< first row shown, of the rows of both buffers
    std::atomic<std::uint32_t> pans;        ///< completed requests to show another row
    std::atomic<std::uint32_t> vsyncWaits;  ///< waits for the vertical blank that did not belong to a pan

    // Vertical sync.
    std::atomic<std::uint32_t> vsyncHeld;
    std::atomic<std::uint32_t> permits;  ///< steps granted and not yet taken
    FutexWord sequence;
    FutexWord resting;

    // Steady clock: `heldTime` while held, otherwise the machine's own plus `offset`. Nanoseconds.
    std::atomic<std::uint32_t> clockHeld;
    alignas(8) std::atomic<std::int64_t> heldTime;
    std::atomic<std::int64_t> offset;

    /// The instance's clock, in nanoseconds.
    std::int64_t time() const { return clockHeld != 0 ? heldTime.load() : machineTime() + offset; }

    /// Wakes whoever waits for the vertical blank, to look again.
    void announce() {
        ++sequence;
        futexWake(sequence);
    }
};

static_assert(std::atomic<std::int64_t>::is_always_lock_free, "the clock's words are shared between processes");
static_assert(sizeof(fb_var_screeninfo) == 160);
static_assert(offsetof(ControlBlock, yoffset) == 168 && offsetof(ControlBlock, heldTime) == 200 &&
              sizeof(ControlBlock) == 216);

}  // namespace Platform::Virtual
