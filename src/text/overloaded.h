// Overloaded: several functions as one, for visiting a variant.
#pragma once

namespace tellaxis {

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace tellaxis
