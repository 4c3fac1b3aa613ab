// The six configurations a draw routine exists for, and how they are related.
#pragma once

#include <cstdint>

namespace zbuffer {

enum class Variant : std::uint8_t { rgb_alpha, rgb, mapped, mapped_z, rgb_alpha_z, rgb_z };
inline constexpr int variant_count = 6;
inline constexpr Variant all_variants[] = {Variant::rgb_alpha,   Variant::rgb,
                                           Variant::mapped,      Variant::mapped_z,
                                           Variant::rgb_alpha_z, Variant::rgb_z};

constexpr int index_of(Variant v) {
  return static_cast<int>(v);
}

constexpr bool is_mapped(Variant v) {
  return v == Variant::mapped || v == Variant::mapped_z;
}
constexpr bool is_alpha(Variant v) {
  return v == Variant::rgb_alpha || v == Variant::rgb_alpha_z;
}
constexpr bool has_depth(Variant v) {
  return v == Variant::mapped_z || v == Variant::rgb_alpha_z || v == Variant::rgb_z;
}

/// The variant of the same colours that draws when `depth_enabled` is zero.
constexpr Variant without_depth(Variant v) {
  switch (v) {
    case Variant::mapped_z:
      return Variant::mapped;
    case Variant::rgb_alpha_z:
      return Variant::rgb_alpha;
    case Variant::rgb_z:
      return Variant::rgb;
    default:
      return v;
  }
}

/// The blending variant that an opaque direct-colour one turns to.
constexpr Variant with_alpha(Variant v) {
  switch (v) {
    case Variant::rgb:
      return Variant::rgb_alpha;
    case Variant::rgb_z:
      return Variant::rgb_alpha_z;
    default:
      return v;
  }
}

/// The opaque variant that a blending one turns to.
constexpr Variant without_alpha(Variant v) {
  switch (v) {
    case Variant::rgb_alpha:
      return Variant::rgb;
    case Variant::rgb_alpha_z:
      return Variant::rgb_z;
    default:
      return v;
  }
}

/// The variant of a configuration.
constexpr Variant variant_for(bool depth, bool direct, bool alpha) {
  if (!direct) return depth ? Variant::mapped_z : Variant::mapped;
  if (alpha) return depth ? Variant::rgb_alpha_z : Variant::rgb_alpha;
  return depth ? Variant::rgb_z : Variant::rgb;
}

}  // namespace zbuffer
