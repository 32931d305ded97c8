#pragma once

namespace Modelc {

/// A visitor made of lambdas, one an alternative.
template <typename... Lambdas>
struct Overloaded : Lambdas... {
    using Lambdas::operator()...;
};
template <typename... Lambdas>
Overloaded(Lambdas...) -> Overloaded<Lambdas...>;

}  // namespace Modelc
