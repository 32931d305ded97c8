#pragma once

#include <optional>
#include <string>
#include <vector>

#include "unit/ctl/memory.h"

namespace Unit {

/// The values that one browser watches, and what it was told of them last.
class WatchedValues {
  public:
    struct News {
        std::string name;
        std::string value;  ///< as Unit::bareValue
        std::string word;   ///< name of an enum's value; what is wrong with the name when there is no such value
        bool known = true;
    };

    void watch(const std::vector<std::string>& names);
    /// What has changed since the last call. Each name is told once after `watch`, unknown ones too.
    std::vector<News> take(const Store& store);
    /// The next call tells everything.
    void forget();
    bool empty() const { return watched_.empty(); }

  private:
    struct Watched {
        std::string name;
        std::optional<Cell> cell;
        std::string problem;
        std::optional<std::string> told;
    };

    std::vector<Watched> watched_;
};

}  // namespace Unit
