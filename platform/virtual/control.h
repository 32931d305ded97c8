#pragma once

#include <atomic>
#include <cstdint>

namespace Platform::Virtual {

/// How the display's vertical sync and the clock run.
enum class Pace : std::uint32_t {
    Free = 0,     ///< 60 Hz and the host's clock
    Lockstep = 1  ///< both held: a driver steps them, frame by frame
};

/// The nanoseconds of one frame at 60 Hz.
constexpr std::int64_t framePeriod = 16'666'667;

/// The state of an instance that its processes share: a file that all of them map. Fixed-size words only, so that
/// processes of different word sizes can meet in it. Zeros are a unit of its first moment.
struct ControlBlock {
    static constexpr std::uint32_t expectedMagic = 0x5445524e;  // "TERN"

    std::atomic<std::uint32_t> magic;
    std::atomic<std::uint32_t> pace;  ///< Pace

    // The display.
    std::atomic<std::uint32_t> width;    ///< pixels
    std::atomic<std::uint32_t> height;   ///< pixels
    std::atomic<std::uint32_t> bits;     ///< a pixel
    std::atomic<std::uint32_t> buffers;  ///< how many the device can hold
    std::atomic<std::uint32_t> virtualHeight;
    std::atomic<std::uint32_t> yOffset;  ///< first shown line
    std::atomic<std::uint32_t> pans;     ///< since the start
    std::atomic<std::uint32_t> vsyncs;   ///< waits for the sync alone, since the start

    // Lockstep. The program arrives at the end of each frame and goes on when it has been granted one more. Both
    // words are futexes. What waits looks every second whether the other side still lives: without its driver a
    // program goes back to running free, so that it never hangs.
    std::atomic<std::uint32_t> granted;
    std::atomic<std::uint32_t> arrived;
    std::atomic<std::uint32_t> driver;   ///< process id of the driver, 0 for none
    std::atomic<std::uint32_t> program;  ///< process id of the program, 0 for none
    std::atomic<std::uint32_t> stale;    ///< set when lockstep ended since the driver had gone
    std::uint32_t reserved;
    std::atomic<std::int64_t> clock;  ///< the held clock, nanoseconds
};
static_assert(sizeof(ControlBlock) == 16 * 4 + 8);
static_assert(std::atomic<std::int64_t>::is_always_lock_free && std::atomic<std::uint32_t>::is_always_lock_free);

}  // namespace Platform::Virtual
