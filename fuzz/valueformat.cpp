// Formats of each kind of value; the text is both the format and the string value.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/stringprovider.h"

namespace {

template <typename T>
void show(const char* format, T value, std::size_t capacity) {
    char storage[256] = "";
    const Engine::Result<T> result(value);
    Engine::StringProvider<T> provider(format, &result, nullptr, std::span(storage, capacity));
    provider.link();
    if (provider.view().size() >= std::max<std::size_t>(capacity, 1)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    show(text.c_str(), -7, size % 257);
    show(text.c_str(), 1LL << 40, 256);
    show(text.c_str(), 3.4e38F, 256);
    show(text.c_str(), -1e300, 256);
    show(text.c_str(), text.c_str(), size % 257);
    return 0;
}
