#pragma once

#include "embedded-gui-engine/color.h"
#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/textid.h"
#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

class EnumVariable;
class Page;
template <typename T>
class ScalarVariable;

/// A constant as a provider: the leaf of every conditional expression.
template <typename T>
class Result : public ValueProvider<T> {
  public:
    constexpr explicit Result(T value) : value_(value) {}

    const char* name() const override { return "Result"; }
    T value() const override { return value_; }
    /// Stores only; nobody is told.
    virtual void setValue(const T& value) { value_ = value; }

  private:
    T value_;
};

extern template class Result<bool>;
extern template class Result<int>;
extern template class Result<float>;
extern template class Result<const char*>;
extern template class Result<Color>;
extern template class Result<Painter::Align>;
extern template class Result<TextId>;
extern template class Result<const Image*>;
extern template class Result<Font*>;
extern template class Result<Page*>;
extern template class Result<EnumVariable*>;
extern template class Result<ScalarVariable<int>*>;
extern template class Result<ScalarVariable<float>*>;

}  // namespace Engine
