#include "embedded-gui-engine/compare.h"

#include <cstring>

namespace Engine {
namespace {

template <typename T>
bool holds(CompareOperator op, const T& left, const T& right) {
    switch (op) {
        case CompareOperator::Equal: return left == right;
        case CompareOperator::Greater: return left > right;
        case CompareOperator::Less: return left < right;
        case CompareOperator::GreaterEqual: return left >= right;
        case CompareOperator::LessEqual: return left <= right;
        case CompareOperator::NotEqual: return left != right;
    }
    return false;
}

bool holds(CompareOperator op, const char* left, const char* right) {
    return holds(op, std::strcmp(left != nullptr ? left : "", right != nullptr ? right : ""), 0);
}

}  // namespace

template <typename T>
bool Compare<T>::evaluate() {
    return provider_ != nullptr && holds(operator_, provider_->value(), reference_);
}

template class Compare<bool>;
template class Compare<int>;
template class Compare<float>;
template class Compare<const char*>;

}  // namespace Engine
