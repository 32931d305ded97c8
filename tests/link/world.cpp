#include "world.h"

#include <errno.h>

#include <fstream>
#include <iterator>
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
    constexpr std::size_t prefixAndLevel = 34;
    auto lines = logLines();
    for (auto& line : lines) {
        if (const auto place = line.find(':', prefixAndLevel); place != line.npos)
            line = line.substr(line.find(' ', line.find_first_not_of(' ', place + 1)) + 1);
    }
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

void World::takeAlarm(EventPoll& poll) {
    Platform::Virtual::failCall(Call::EpollWait, EINTR);
    poll.wait(0, true);
}
