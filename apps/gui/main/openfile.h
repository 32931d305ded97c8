#pragma once

#include <sys/types.h>

#include <string>

/// A file that is closed with this. One that cannot be opened is fatal (std::runtime_error) with its path.
class OpenFile {
  public:
    OpenFile(const std::string& path, int flags, mode_t mode = 0);
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    int descriptor() const { return fd_; }

  private:
    int fd_;
};
