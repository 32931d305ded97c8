#pragma once

#include <stdexcept>
#include <string>

namespace Unit {

/// Something that a person has to know: what happened and what to do. Each line of it is a problem of its own.
class Problem : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace Unit
