#pragma once

#include <string>

#include "unit/server/variable.h"

namespace Unit {

/// The files that were used last, the newest first and each of them once.
class RecentFiles {
  public:
    /// `table` has the column FileName; `count` is the variable that holds how many there are.
    RecentFiles(Store& store, const std::string& table, std::string_view count)
        : files_(store, table, "FileName"), count_(store, count) {}

    /// `name` comes to the front; of a full list the oldest is forgotten.
    void remember(const std::string& name);

  private:
    Column files_;
    Number count_;
};

}  // namespace Unit
