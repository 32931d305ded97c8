#include "world.h"

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "apps/common/log/log.h"

World::World() {
    driver.holdClockAt(1'000'000'000);
    Log::setDevice(nullptr);
    Log::threshold = nullptr;
}

World::~World() {
    Log::threshold = nullptr;
    Log::setDevice(nullptr);
}

std::string World::logText() const {
    std::ifstream file(Platform::Virtual::path("/dev/kmsg"));
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> World::logLines() const {
    std::vector<std::string> lines;
    std::istringstream text(logText());
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
}

std::string World::lastLogLine() const {
    const auto lines = logLines();
    return lines.empty() ? "" : lines.back();
}

std::vector<std::string> World::logTexts() const {
    static const std::regex head("^.{34} *[^ :]*: *[0-9]+ ");
    auto lines = logLines();
    for (auto& line : lines) line = std::regex_replace(line, head, "", std::regex_constants::format_first_only);
    return lines;
}

std::string World::fatalTextOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing thrown";
}
