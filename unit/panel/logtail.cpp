#include "unit/panel/logtail.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Unit {

namespace {

constexpr std::string_view levels[] = {"DebugAll", "DebugMost", "DebugLight", "LogAll",
                                       "LogMost",  "LogLight",  "Warn",       "Error"};
constexpr int error = 7;

std::string_view takeWord(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    const auto word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(word.size());
    return word;
}

}  // namespace

// "PROGRAM LEVEL FILE:LINE TEXT", with spaces that make columns of them.
LogLine parseLogLine(std::string_view line) {
    std::string_view rest = line;
    const auto program = takeWord(rest);
    const auto* level = std::ranges::find(levels, takeWord(rest));
    if (level == std::end(levels)) return {error, "", "", std::string(line)};
    std::string place(takeWord(rest));
    if (place.ends_with(':')) place += takeWord(rest);
    if (!rest.empty()) rest.remove_prefix(1);
    return {static_cast<int>(level - std::begin(levels)), std::string(program), std::move(place), std::string(rest)};
}

std::vector<LogLine> LogTail::take() {
    const int fd = ::open(file_.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return {};
    struct stat status = {};
    ::fstat(fd, &status);
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size < at_) at_ = 0;
    bool cut = false;
    if (size - at_ > window) {
        gap_ = gap_ || begun_;
        at_ = size - window;
        cut = true;
    }
    begun_ = true;
    std::string text(size - at_, '\0');
    const ssize_t got = ::pread(fd, text.data(), text.size(), static_cast<off_t>(at_));
    ::close(fd);
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);

    std::vector<LogLine> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        if (!cut) lines.push_back(parseLogLine(std::string_view(text).substr(start, end - start)));
        cut = false;  // only the first one lacks its beginning
    }
    at_ += start;
    return lines;
}

bool LogTail::takeGap() {
    return std::exchange(gap_, false);
}

}  // namespace Unit
