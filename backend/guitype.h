#pragma once

/// Tags: they only select a form of `Backend::Var`.
namespace GuiType {

template <typename T>
struct CEnum {};

struct Array {};

}  // namespace GuiType
