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
    std::ifstream stream(file_, std::ios::ate);
    if (stream.tellg() < read_) {
        read_ = 0;
        page_.clear();
    }
    stream.seekg(read_);
    // A line without its end is still being written.
    for (std::string line; std::getline(stream, line) && !stream.eof(); read_ = stream.tellg())
        if (const auto at = line.find(mark); at != std::string::npos) page_ = line.substr(at + mark.size());
    return page_;
}

}  // namespace Unit
