#include "unit/server/modules/recentfiles.h"

namespace Unit {

void RecentFiles::remember(const std::string& name) {
    std::size_t row = 0;
    while (row + 1 < files_.rows() && files_.text(row) != name) ++row;
    for (; row > 0; --row) files_.setText(row, files_.text(row - 1));
    files_.setText(0, name);
    std::int32_t count = 0;
    for (std::size_t i = 0; i < files_.rows(); ++i) count += files_.text(i).empty() ? 0 : 1;
    count_.set(count);
}

}  // namespace Unit
