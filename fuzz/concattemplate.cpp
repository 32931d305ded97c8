// The first byte is the buffer's length less 1, the rest is the template and also the text of one of its parts.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "embedded-gui-engine/concatmodifier.h"
#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/stringprovider.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::vector<char> buffer(data[0] + 1U, '#');
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    char storage[2][40] = {};
    const Engine::Result<const char*> value(text.c_str());
    const Engine::Result<int> number(data[0]);
    Engine::StringProvider<const char*> first("%s", &value, nullptr, storage[0]);
    Engine::StringProvider<int> third("(%i)", &number, nullptr, storage[1]);
    first.update();
    third.update();
    Engine::StringProviderBase* const parts[] = {&first, nullptr, &third};
    Engine::fillTemplate(buffer.data(), buffer.size(), text.c_str(), parts);
    if (std::memchr(buffer.data(), '\0', buffer.size()) == nullptr) std::abort();
    return 0;
}
