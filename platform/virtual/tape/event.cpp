#include "platform/virtual/tape/event.h"

namespace Platform::Virtual {

namespace {

// The first byte: the kind, and which fields follow.
constexpr unsigned kindMask = 0x0f, hasId = 0x10, hasResult = 0x20, hasNumber = 0x40, hasData = 0x80;
static_assert(static_cast<unsigned>(Event::Kind::Count_) <= kindMask + 1);

bool takeWord(std::span<const std::byte>& in, std::uint32_t& word) {
    std::uint64_t value = 0;
    if (!takeNumber(in, value) || value > 0xffffffff) return false;
    word = static_cast<std::uint32_t>(value);
    return true;
}

bool takeBytes(std::span<const std::byte>& in, std::size_t unit, std::span<const std::byte>& bytes) {
    std::uint64_t count = 0;
    if (!takeNumber(in, count) || count > in.size() / unit) return false;
    bytes = in.first(static_cast<std::size_t>(count) * unit);
    in = in.subspan(bytes.size());
    return true;
}

}  // namespace

void appendNumber(std::vector<std::byte>& out, std::uint64_t value) {
    for (; value >= 0x80; value >>= 7) out.push_back(static_cast<std::byte>(value | 0x80));
    out.push_back(static_cast<std::byte>(value));
}

bool takeNumber(std::span<const std::byte>& in, std::uint64_t& value) {
    value = 0;
    for (unsigned shift = 0; shift < 64 && !in.empty(); shift += 7) {
        const auto byte = std::to_integer<std::uint64_t>(in.front());
        in = in.subspan(1);
        value |= (byte & 0x7f) << shift;
        if (byte < 0x80) return true;
    }
    return false;
}

void append(std::vector<std::byte>& out, const Event& event) {
    unsigned head = static_cast<unsigned>(event.kind);
    if (event.id != 0) head |= hasId;
    if (event.result != 0) head |= hasResult;
    if (event.number != 0) head |= hasNumber;
    if (!event.data.empty()) head |= hasData;
    out.push_back(static_cast<std::byte>(head));
    if (event.id != 0) appendNumber(out, event.id);
    if (event.result != 0) appendNumber(out, event.result);
    if (event.number != 0) appendNumber(out, event.number);
    if (event.data.empty()) return;
    appendNumber(out, event.data.size());
    out.insert(out.end(), event.data.begin(), event.data.end());
}

bool take(std::span<const std::byte>& in, Event& event) {
    if (in.empty()) return false;
    const auto head = std::to_integer<unsigned>(in.front());
    in = in.subspan(1);
    event = {};
    event.kind = static_cast<Event::Kind>(head & kindMask);
    if (event.kind < Event::Kind::Pass || event.kind >= Event::Kind::Count_) return false;
    if ((head & hasId) != 0 && !takeWord(in, event.id)) return false;
    if ((head & hasResult) != 0 && !takeWord(in, event.result)) return false;
    if ((head & hasNumber) != 0 && !takeNumber(in, event.number)) return false;
    return (head & hasData) == 0 || takeBytes(in, 1, event.data);
}

void append(std::vector<std::byte>& out, const MemoryWords& words) {
    appendNumber(out, words.id);
    appendNumber(out, words.first);
    appendNumber(out, words.bytes.size() / sizeof(std::uint32_t));
    out.insert(out.end(), words.bytes.begin(), words.bytes.end());
}

bool take(std::span<const std::byte>& in, MemoryWords& words) {
    std::uint64_t first = 0;
    if (!takeWord(in, words.id) || !takeNumber(in, first) || first > 0xffffffff) return false;
    words.first = static_cast<std::size_t>(first);
    return takeBytes(in, sizeof(std::uint32_t), words.bytes);
}

}  // namespace Platform::Virtual
