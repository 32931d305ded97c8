#include "unit/panel/access.h"

#include <algorithm>
#include <string>

namespace Unit {

namespace {

bool isPort(std::string_view text) {
    return !text.empty() && text.size() <= 5 && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

}  // namespace

bool isOwnHost(std::string_view host) {
    for (const std::string_view name : {"127.0.0.1", "localhost"}) {
        if (host.size() < name.size() || !equalIgnoringCase(host.substr(0, name.size()), name)) continue;
        const std::string_view rest = host.substr(name.size());
        if (rest.empty() || (rest.front() == ':' && isPort(rest.substr(1)))) return true;
    }
    return false;
}

bool isOwnOrigin(std::string_view origin, std::string_view host) {
    return isOwnHost(host) && equalIgnoringCase(origin, "http://" + std::string(host));
}

}  // namespace Unit
