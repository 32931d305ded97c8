#pragma once

#include <string>

#include "platform/virtual/instance.h"

namespace Unit {

/// An instance of this process's own, gone with all that it left when the object goes.
class ScratchUnit {
  public:
    /// `purpose` is part of its name.
    explicit ScratchUnit(const std::string& purpose);
    ~ScratchUnit();
    ScratchUnit(const ScratchUnit&) = delete;
    ScratchUnit& operator=(const ScratchUnit&) = delete;

    const Platform::Virtual::Place& place() const { return place_; }

  private:
    Platform::Virtual::Place place_;
};

}  // namespace Unit
