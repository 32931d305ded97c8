#pragma once

#include <filesystem>
#include <set>
#include <string>

/// Where something of the catalogue stands.
struct Place {
    std::filesystem::path file;
    int line = 0;
};

/// Collects all that is wrong with the input, so that one run tells everything. Each says what to do.
class Problems {
  public:
    void add(const Place& place, const std::string& message) { found_.insert({place.file, place.line, message}); }
    bool none() const { return found_.empty(); }
    /// "file:line: message" a line, by file and line; line 0 leaves the line out.
    std::string text() const;

  private:
    struct Problem {
        std::filesystem::path file;
        int line;
        std::string message;
        auto operator<=>(const Problem&) const = default;
    };
    std::set<Problem> found_;
};
