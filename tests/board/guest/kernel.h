#pragma once

#include <string>

/// The kernel that the board runs: its file systems, its modules, its log.
namespace Board {

/// The file systems that every program expects.
void mountFileSystems();

/// Loads /modules/NAME.ko; `parameters` as on a command line ("depth=16").
void loadModule(const std::string& name, const std::string& parameters = "");
void unloadModule(const std::string& name);
/// A number of /sys/module/MODULE/parameters.
unsigned long long moduleNumber(const std::string& module, const std::string& parameter);

[[noreturn]] void powerOff();

/// The lines that programs and kernel have written since `forget`.
class KernelLog {
  public:
    KernelLog();
    ~KernelLog();
    KernelLog(const KernelLog&) = delete;
    KernelLog& operator=(const KernelLog&) = delete;

    /// What is written from now on.
    void forget();
    bool has(const std::string& text);
    /// Waits for it; throws Failure with the last lines otherwise.
    void await(const std::string& text, double seconds);

  private:
    void readAll();
    std::string lastLines(std::size_t count);

    int fd_;
    std::string text_;
};

}  // namespace Board
