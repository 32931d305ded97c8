// What a test or a driving program sees of the virtual twin: docs/platform.md tells how to use it.
#pragma once

#include <string>

#include "platform/virtual/driver.h"
#include "platform/virtual/faults.h"
#include "platform/virtual/instance.h"

namespace Platform::Virtual {

/// The file behind a path of the unit ("/dev/kmsg") in this process's instance.
std::string path(const std::string& unitPath);

/// Makes a fresh instance the one of this process, and removes it with all its names and faults at its end.
/// A product under test must have closed what it opened by then, or forget it.
class TemporaryInstance {
  public:
    TemporaryInstance();
    ~TemporaryInstance();
    TemporaryInstance(const TemporaryInstance&) = delete;
    TemporaryInstance& operator=(const TemporaryInstance&) = delete;

    const Place& place() const { return place_; }

  private:
    Place place_;
};

}  // namespace Platform::Virtual
