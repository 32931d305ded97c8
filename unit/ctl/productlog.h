#pragma once

#include <ios>
#include <string>
#include <string_view>
#include <vector>

namespace Unit {

/// The log that the unit's processes write, read from outside.
class ProductLog {
  public:
    /// `folder` of the instance.
    explicit ProductLog(const std::string& folder) : file_(folder + "/dev/kmsg") {}

    const std::string& file() const { return file_; }
    void clear() const;
    /// The last `count` lines, in order. Empty when there is no log.
    std::vector<std::string> last(std::size_t count) const;
    /// The name in the newest line "USER Page: NAME"; empty when there is none.
    /// A further call reads on where the last one ended.
    std::string page() const;

  private:
    std::string file_;
    mutable std::streamoff read_ = 0;
    mutable std::string page_;
};

}  // namespace Unit
