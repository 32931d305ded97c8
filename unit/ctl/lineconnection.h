#pragma once

#include <string>

namespace Unit {

/// A client of a control socket: a request is a line, the answer is a line that begins with "ok" or "error".
class LineConnection {
  public:
    LineConnection() = default;
    ~LineConnection();
    LineConnection(LineConnection&& other) noexcept : fd_(other.fd_), in_(std::move(other.in_)) { other.fd_ = -1; }
    LineConnection& operator=(LineConnection&&) = delete;

    /// `path` is one of the machine. False, with errno, when nobody listens there.
    bool connect(const std::string& path);
    bool connected() const { return fd_ >= 0; }
    /// Whether the other side has closed it.
    bool hungUp() const;
    void close();

    /// What stands behind "ok". Throws Problem with what stands behind "error", and when no answer comes within
    /// `milliseconds`.
    std::string ask(const std::string& line, int milliseconds = 10'000);
    /// The next line, waiting for ever when `milliseconds` is negative. False at the end or when time is up.
    bool read(std::string& line, int milliseconds);

  private:
    int fd_ = -1;
    std::string in_;
};

}  // namespace Unit
