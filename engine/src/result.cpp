#include "embedded-gui-engine/result.h"

namespace Engine {

template class Result<bool>;
template class Result<int>;
template class Result<float>;
template class Result<const char*>;
template class Result<Color>;
template class Result<Painter::Align>;
template class Result<TextId>;
template class Result<const Image*>;
template class Result<Font*>;
template class Result<Page*>;
template class Result<EnumVariable*>;
template class Result<ScalarVariable<int>*>;
template class Result<ScalarVariable<float>*>;

}  // namespace Engine
