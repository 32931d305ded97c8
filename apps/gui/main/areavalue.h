// The shell's own way to values: straight in the memory areas. What it writes reaches the variables by the server's
// echo, like everybody's.
#pragma once

#include <cstring>
#include <string_view>

#include "apps/common/event/notify.h"
#include "backend/areas.h"
#include "model/catalogue/places.h"

namespace Area {

// `T` is what the catalogue says of the place: unsigned char for a flag, int, float, std::uint16_t; nothing checks it.
// The areas must be open.

/// In the mapped area; words of four bytes are aligned.
inline unsigned char* address(const Places::Place& place) {
    return Backend::areaBases[static_cast<unsigned>(place.area)] + place.offset;
}

template <typename T>
T read(const Places::Place& place) {
    T value;
    std::memcpy(&value, address(place), sizeof value);
    return value;
}

inline bool flag(const Places::Place& place) {
    return *address(place) != 0;
}
inline int number(const Places::Place& place) {
    return read<int>(place);
}
inline float fraction(const Places::Place& place) {
    return read<float>(place);
}

/// Up to its terminator, at most the whole field. Valid as long as the area, which the server may write meanwhile.
inline std::string_view text(const Places::Place& place) {
    const char* begin = reinterpret_cast<const char*>(address(place));
    return {begin, strnlen(begin, place.size)};
}

template <typename T>
void store(const Places::Place& place, T value) {
    std::memcpy(address(place), &value, sizeof value);
}

inline void post(const Places::Place& place) {
    sendEvent(place.id, 0, 0);
}

/// Stores and tells the server.
template <typename T>
void storeAndPost(const Places::Place& place, T value) {
    store(place, value);
    post(place);
}

/// The same when the place holds another value; answers whether it did.
template <typename T>
bool change(const Places::Place& place, T value) {
    if (std::memcmp(address(place), &value, sizeof value) == 0) return false;
    storeAndPost(place, value);
    return true;
}

}  // namespace Area
