// The configurations of a renderer that a picture can be drawn in.
#pragma once

namespace kv {

struct Variant {
  bool direct_color;
  bool alpha;
  bool depth;

  static const Variant rgb, rgb_z, rgb_alpha, rgb_alpha_z, mapped, mapped_z;
  friend constexpr bool operator==(const Variant&, const Variant&) = default;
};

inline constexpr Variant Variant::rgb{true, false, false};
inline constexpr Variant Variant::rgb_z{true, false, true};
inline constexpr Variant Variant::rgb_alpha{true, true, false};
inline constexpr Variant Variant::rgb_alpha_z{true, true, true};
inline constexpr Variant Variant::mapped{false, false, false};
inline constexpr Variant Variant::mapped_z{false, false, true};

}  // namespace kv
