// Forced into each file of the wasm32 build: what the emscripten library of Debian 12 lacks.
#pragma once

#include <bit>
#include <version>

#ifndef __cpp_lib_bit_cast
namespace std {
template <class To, class From>
constexpr To bit_cast(const From& from) noexcept {
  return __builtin_bit_cast(To, from);
}
}  // namespace std
#endif
