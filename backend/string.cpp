#include "backend/string.h"

#include <cstring>

namespace Backend::Variable {
namespace {

/// `length`, or less when a UTF-8 character would be cut at it. `text` holds at least one byte more than `length`.
unsigned int wholeCharacters(char const* text, unsigned int length) {
    constexpr unsigned int longestTail = 3;
    unsigned int start = length;
    while (start > 0 && length - start < longestTail && (text[start] & 0xc0) == 0x80) --start;
    const bool leadByte = (text[start] & 0xc0) == 0xc0;
    return leadByte ? start : length;
}

}  // namespace

int String<char const*>::size() const {
    return static_cast<int>(storageSize());
}

bool String<char const*>::setValue(char const* text) {
    if (text == nullptr) return false;
    const std::size_t length = strnlen(text, storageSize());
    if (length >= storageSize() || !withinLimits(static_cast<int>(length))) return false;
    if (store(text, static_cast<unsigned int>(length))) changed();
    return true;
}

const char* String<char const*>::name() const {
    return providedName();
}

char const* String<char const*>::value() const {
    return stored();
}

int String<char const*>::flags() const {
    return (isSync() ? 0 : FlagsPending) | (limited() ? FlagsLimited : 0);
}

bool String<char const*>::receive(char const* text, unsigned int fieldSize) {
    if (storageSize() == 0) return false;
    auto length = static_cast<unsigned int>(strnlen(text, fieldSize));
    if (length >= storageSize()) length = wholeCharacters(text, storageSize() - 1);
    if (!store(text, length)) return false;
    mark();
    return true;
}

}  // namespace Backend::Variable
