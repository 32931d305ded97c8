#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Unit {

/// A line of the log, taken apart.
struct LogLine {
    int level = 0;  ///< 0 to 7 as in Log::Level; a line of another form is an error's
    std::string program;
    std::string place;  ///< "file.cpp:12"
    std::string text;

    bool operator==(const LogLine&) const = default;
};

LogLine parseLogLine(std::string_view line);

/// Follows the log of a unit as it grows, and begins anew when it was cleared.
class LogTail {
  public:
    /// Bytes looked at in one call: when more have come, what is older goes.
    static constexpr std::size_t window = 128 << 10;

    explicit LogTail(std::string file) : file_(std::move(file)) {}

    /// The whole lines that have come since the last call, the newest last; at the first call the end of the log.
    std::vector<LogLine> take();
    /// Whether lines were left out since this was asked last, since there were too many at once.
    bool takeGap();

  private:
    std::string file_;
    std::size_t at_ = 0;
    bool begun_ = false;
    bool gap_ = false;
};

}  // namespace Unit
