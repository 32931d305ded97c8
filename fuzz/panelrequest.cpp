// What a page sends, and the lines that the panel makes of it for the unit's server.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "unit/panel/access.h"
#include "unit/panel/logtail.h"
#include "unit/panel/request.h"

namespace {

/// A part of a request line must not begin another one.
void checkLine(const std::string& text) {
    for (const char c : text)
        if (static_cast<unsigned char>(c) < ' ') std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string problem;
    if (const auto request = Unit::parseRequest(text, problem)) {
        if (const auto* one = std::get_if<Unit::Request::Do>(&request->what))
            checkLine(one->module + one->setting + one->value);
        if (const auto* one = std::get_if<Unit::Request::Set>(&request->what)) checkLine(one->name + one->value);
    } else if (problem.empty()) {
        std::abort();
    }
    Unit::parseLogLine(text);
    if (Unit::isOwnOrigin(text, text)) std::abort();
    return 0;
}
