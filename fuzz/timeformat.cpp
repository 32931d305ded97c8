// Time formats of both kinds: the first four bytes are the duration, the rest is the format.
#include <cstring>
#include <string>

#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/timestringprovider.h"
#include "embedded-gui-engine/unixtimestringprovider.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::int32_t seconds = 0;
    if (size < sizeof seconds) return 0;
    std::memcpy(&seconds, data, sizeof seconds);
    const std::string format(reinterpret_cast<const char*>(data) + sizeof seconds, size - sizeof seconds);
    char storage[100] = "";
    const Engine::Result<int> duration(seconds);
    Engine::TimeStringProvider(format.c_str(), &duration, storage).link();
    const Engine::Result<long long> time(static_cast<long long>(seconds) * 0x10001);
    char otherStorage[256] = "";
    Engine::UnixTimeStringProvider(format.c_str(), &time, nullptr, otherStorage).link();
    return 0;
}
