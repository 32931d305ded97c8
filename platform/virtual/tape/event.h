#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Platform::Virtual {

/// One thing of a recording: something that reached the product, or something that it showed. Which fields an event
/// has depends on its kind; a field that is 0 takes no room.
struct Event {
    enum class Kind : std::uint8_t {
        Pass = 1,  ///< a display wait is over; number: how much longer than 1/60 s after the last one, zigzag, ns
        Path,      ///< id stands for the path or name in data from here on
        Area,      ///< the memory area id was opened; result: errno, number: its bytes, data: what was in it
        Memory,    ///< words of the areas have changed: see MemoryWords
        Wait,      ///< an epoll wait found id ready for number; result: how many more of the same wait follow
        Read,     ///< a read from id; result: errno, data: the bytes, or number: which of the large chunks before (1..)
        Result,   ///< the call `number` on id ended with the errno in result, 0 for success
        Picture,  ///< shown, with the fingerprint in number; result 1: kept, data: its tiles since the last one kept
        Sent,     ///< fingerprint of all that the pass has sent to the server
        Mode,     ///< data: the display's mode as fb_var_screeninfo, number: the row shown
        Contents,  ///< data: what the framebuffer held at the byte offset number
        Listing,   ///< data: names in the folder id, each with a zero behind it
        Time,  ///< a look at the clock while the product starts; number: since the beginning of the pass, zigzag, ns
        Count_
    };

    Kind kind = Kind::Pass;
    std::uint32_t id = 0;
    std::uint32_t result = 0;
    std::uint64_t number = 0;
    std::span<const std::byte> data = {};
};

/// Reads of this size and above are numbered and, when they come again, referred to.
constexpr std::size_t largeChunk = 256;

void appendNumber(std::vector<std::byte>& out, std::uint64_t value);
/// Takes a number off the front of `in`. False when there is none.
bool takeNumber(std::span<const std::byte>& in, std::uint64_t& value);

void append(std::vector<std::byte>& out, const Event& event);
/// Takes an event off the front of `in`; its data points into `in`. False when what stands there is none.
bool take(std::span<const std::byte>& in, Event& event);

constexpr std::uint64_t zigzag(std::int64_t value) {
    return (static_cast<std::uint64_t>(value) << 1) ^ static_cast<std::uint64_t>(value >> 63);
}
constexpr std::int64_t unzigzag(std::uint64_t value) {
    return static_cast<std::int64_t>(value >> 1) ^ -static_cast<std::int64_t>(value & 1);
}
static_assert(unzigzag(zigzag(-3)) == -3 && zigzag(-1) == 1);

/// Neighbouring 32-bit words of an area, as they stand in a Memory event: id of the area's path, first word, count,
/// bytes.
struct MemoryWords {
    std::uint32_t id = 0;
    std::size_t first = 0;
    std::span<const std::byte> bytes;
};
void append(std::vector<std::byte>& out, const MemoryWords& words);
bool take(std::span<const std::byte>& in, MemoryWords& words);

inline std::span<const std::byte> asBytes(const void* data, std::size_t size) {
    return {static_cast<const std::byte*>(data), size};
}

}  // namespace Platform::Virtual
