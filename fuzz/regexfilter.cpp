// An expression and, behind the first line feed, the text that it filters.
#include "embedded-gui-engine/regexfilter.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(input.find('\n'), size);
    const std::string expression = input.substr(0, end);
    const std::string subject = input.substr(std::min(end + 1, size), Engine::RegexFilter::TextSize - 1);
    Engine::RegexFilter filter(expression.c_str());
    filter.link();
    if (filter.isCompiled()) {
        char out[Engine::RegexFilter::TextSize];
        filter.apply(subject.c_str(), out);
        if (std::string_view(out, sizeof out).find('\0') == std::string_view::npos) std::abort();
    }
    filter.setExpression(nullptr);
    return 0;
}
