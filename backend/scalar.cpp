#include "backend/scalar.h"

#include <type_traits>

namespace Backend::Variable {

template <typename T>
int Scalar<T>::size() const {
    return sizeof(T);
}

template <typename T>
bool Scalar<T>::setValue(T value) {
    if (!this->withinLimits(value)) return false;
    this->write(value);
    return true;
}

template <typename T>
bool Scalar<T>::increment(T step, bool wrap) {
    using Wide = std::conditional_t<std::is_same_v<T, int>, long long, T>;
    return setValue(this->template stepped<Wide>(this->stored(), step, wrap));
}

template <typename T>
const char* Scalar<T>::name() const {
    return this->providedName();
}

template <typename T>
T Scalar<T>::value() const {
    return this->stored();
}

template <typename T>
int Scalar<T>::flags() const {
    return (this->isSync() ? 0 : FlagsPending) | (this->limited() ? FlagsLimited : 0);
}

template <typename T>
T Scalar<T>::min() const {
    return this->lowerLimit();
}

template <typename T>
T Scalar<T>::max() const {
    return this->upperLimit();
}

template class Scalar<int>;
template class Scalar<float>;

}  // namespace Backend::Variable
