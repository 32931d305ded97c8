#include "embedded-gui-engine/conditionalvalue.h"

namespace Engine {

template class ConditionalValue<bool>;
template class ConditionalValue<int>;
template class ConditionalValue<float>;
template class ConditionalValue<const char*>;
template class ConditionalValue<Color>;
template class ConditionalValue<Painter::Align>;
template class ConditionalValue<TextId>;
template class ConditionalValue<const Image*>;
template class ConditionalValue<Font*>;
template class ConditionalValue<Page*>;
template class ConditionalValue<EnumVariable*>;
template class ConditionalValue<ScalarVariable<int>*>;
template class ConditionalValue<ScalarVariable<float>*>;

}  // namespace Engine
