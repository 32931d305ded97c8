#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "unit/server/store.h"

namespace Unit {

/// The values that survive a restart (everything in MemPersistent and MemSemiPersistent), kept by name in one file
/// that a person can read. It is written at most once a second, as a whole or not at all.
class SavedSettings {
  public:
    SavedSettings(Store& store, std::filesystem::path file);

    /// Puts back what the file says. What it says of unknown values or with impossible values is skipped and logged.
    void restore();
    /// Whether there was a file that said anything.
    bool restored() const { return restored_; }
    /// All of them zero, as before the factory gives them their values.
    void zero();
    static bool survives(const Cell& cell);
    void tick(std::int64_t nanoseconds);
    /// Writes when something has changed since the last time.
    void save();

  private:
    struct Kept {
        std::string name;
        Cell cell;
    };

    std::vector<std::byte> copy() const;

    Store& store_;
    std::filesystem::path file_;
    std::vector<Kept> kept_;
    std::vector<std::byte> written_;
    std::int64_t sinceLook_ = 0;
    bool restored_ = false;
};

}  // namespace Unit
