#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace Unit {

/// A program that this process starts, watches and ends. It gets a signal when this process dies, and has a process
/// group of its own, so that a Ctrl-C at the terminal reaches this process alone.
class ChildProcess {
  public:
    /// `output`: the file that its stdout and stderr go to, made anew at each start. `whenOrphaned`: SIGTERM for a
    /// program that has something to take away, SIGKILL for one that may hang.
    ChildProcess(std::string program, std::string output, int whenOrphaned)
        : program_(std::move(program)), output_(std::move(output)), whenOrphaned_(whenOrphaned) {}
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void start(const std::vector<std::string>& arguments);
    /// Another program for the next start.
    void setProgram(std::string program) { program_ = std::move(program); }
    bool running() const { return pid_ > 0; }
    pid_t pid() const { return pid_; }
    /// How it ended ("with status 1", "by signal 11 (Segmentation fault)"), told once; nothing while it runs.
    std::optional<std::string> takeEnd();
    void signal(int number) const;
    /// SIGTERM, and SIGKILL after `patience` milliseconds; returns when it is gone.
    void end(int patience = 3000);
    /// What it has written last, as one line; empty when it was silent.
    std::string lastWords() const;
    /// All that it has written.
    std::string words() const;

  private:
    std::string program_;
    std::string output_;
    int whenOrphaned_;
    pid_t pid_ = -1;
};

}  // namespace Unit
