#pragma once

#include <string>

namespace Unit {

/// An exclusive lock that ends with the process that took it, however it ends.
class LockFile {
  public:
    LockFile() = default;
    ~LockFile() { release(); }
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    /// False when somebody else holds it, or the file cannot be made.
    bool take(const std::string& file);
    void release();
    /// Whether a process holds the lock of `file`; makes no file.
    static bool isHeld(const std::string& file);

  private:
    int fd_ = -1;
};

}  // namespace Unit
