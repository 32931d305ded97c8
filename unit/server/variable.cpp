#include "unit/server/variable.h"

#include <algorithm>

#include "apps/common/log/log.h"

namespace Unit {

Variable::Variable(Store& store, std::string_view name, std::string_view kinds) : store_(&store) {
    std::string problem;
    const auto found = Store::find(name, problem);
    if (!found) TERN_FATAL("%s", problem.c_str());
    if (kinds.find(static_cast<char>(found->kind)) == std::string_view::npos)
        TERN_FATAL("%.*s is of the kind %c", static_cast<int>(name.size()), name.data(),
                   static_cast<char>(found->kind));
    cell_ = *found;
}

void Mask::setFirst(std::size_t count) const {
    std::vector<std::byte> mask(cell_.size);
    for (std::size_t bit = 0; bit < count && bit < 8 * mask.size(); ++bit)
        mask[bit / 8] |= static_cast<std::byte>(1U << (bit % 8));
    store_->setBytes(cell_, mask);
}

Column::Column(Store& store, std::string table, std::string field) : store_(&store) {
    std::string problem;
    const auto found = Store::find(table + "[0]." + field, problem);
    if (!found) TERN_FATAL("%s", problem.c_str());
    first_ = *found;
    const auto* described = Catalogue::findTable(table);
    if (described == nullptr) described = Catalogue::findTable(table + ".Rows");
    stride_ = described->stride;
    rows_ = described->rows;
}

Cell Column::cell(std::size_t row) const {
    Cell cell = first_;
    cell.offset += static_cast<std::uint32_t>(std::min(row, rows_ - 1) * stride_);
    return cell;
}

}  // namespace Unit
