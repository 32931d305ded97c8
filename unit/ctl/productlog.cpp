#include "unit/ctl/productlog.h"

#include <deque>
#include <fstream>

namespace Unit {

void ProductLog::clear() const {
    std::ofstream(file_, std::ios::trunc);
}

std::vector<std::string> ProductLog::last(std::size_t count) const {
    std::ifstream stream(file_);
    std::deque<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
        if (lines.size() > count) lines.pop_front();
    }
    return {lines.begin(), lines.end()};
}

std::string ProductLog::page() const {
    constexpr std::string_view mark = "USER Page: ";
    std::ifstream stream(file_);
    std::string name;
    for (std::string line; std::getline(stream, line);)
        if (const auto at = line.find(mark); at != std::string::npos) name = line.substr(at + mark.size());
    return name;
}

}  // namespace Unit
