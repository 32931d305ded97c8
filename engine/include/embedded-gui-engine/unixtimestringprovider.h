#pragma once

#include "embedded-gui-engine/stringprovider.h"

namespace Engine {

/// Shows seconds since 1970 as local time. The format is strftime's, of at most 255 bytes. A value outside the
/// calendar, or a longer format, is logged once and the number is shown.
class UnixTimeStringProvider : public StringProvider<long long> {
  public:
    using StringProvider::StringProvider;

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

  private:
    /// Null when `buffer` holds the time, else what is wrong.
    const char* formatTime(long long seconds, char (&buffer)[TextSize]) const;
};

}  // namespace Engine
