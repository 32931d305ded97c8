// The first byte is the buffer's length, the next 16 are the record's words, the rest is the format.
#include "embedded-gui-engine/formatmixed.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::uint32_t words[4];
    if (size < 1 + sizeof words) return 0;
    std::vector<char> buffer(data[0], '#');
    std::memcpy(words, data + 1, sizeof words);
    const std::string format(reinterpret_cast<const char*>(data) + 1 + sizeof words, size - 1 - sizeof words);
    Engine::formatMixed(buffer.data(), buffer.size(), format.c_str(), words);
    if (!buffer.empty() && std::memchr(buffer.data(), '\0', buffer.size()) == nullptr) std::abort();
    return 0;
}
