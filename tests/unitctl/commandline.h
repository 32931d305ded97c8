#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

/// All bytes of a file; empty when it cannot be read.
std::string contentOf(const std::filesystem::path& file);

struct Outcome {
    int status;  ///< exit status, -1 when a signal ended it
    std::string out;
    std::string errors;
};

/// Runs a program of the build to its end.
Outcome runProgram(const std::vector<std::string>& words);

/// Sends a signal to a child process and waits for its end.
void endProcess(pid_t process, int signal);

/// A unit of its own name, stopped and wiped away at the end.
class TestUnit {
  public:
    TestUnit();
    ~TestUnit();
    TestUnit(const TestUnit&) = delete;
    TestUnit& operator=(const TestUnit&) = delete;

    const std::string& name() const { return name_; }
    std::string folder() const;
    /// unitctl WORDS... --instance NAME
    Outcome ctl(std::vector<std::string> words) const;
    /// What it prints, without the line end; a test failure when it fails.
    std::string say(const std::vector<std::string>& words) const;
    /// A server of the unit that no supervisor has started, for `endProcess`.
    pid_t startServer() const;
    /// Its shared objects that exist.
    std::vector<std::string> sharedObjects() const;
    std::filesystem::path temporary(const std::string& file) const { return folder() + "/" + file; }

  private:
    std::string name_;
};
