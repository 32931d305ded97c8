#pragma once

#include <map>
#include <string>

namespace Unit {

/// Tells when a file below a folder has been written. Editors write in several steps: changes that come close together
/// are told as one.
class TreeWatch {
  public:
    /// Throws Problem when the folder cannot be watched.
    explicit TreeWatch(const std::string& folder);
    ~TreeWatch();
    TreeWatch(const TreeWatch&) = delete;
    TreeWatch& operator=(const TreeWatch&) = delete;

    /// Waits for a change, at most `milliseconds`. The file that was written last, empty when there was none.
    std::string wait(int milliseconds);

  private:
    void add(const std::string& folder);
    std::string readChanges();

    int fd_;
    std::map<int, std::string> folders_;
};

}  // namespace Unit
