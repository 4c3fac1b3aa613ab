// The properties by which the routines of a family differ, and in which rule tables are written.
#pragma once

#include <cstdint>

#include "module/core/rule_table.h"
#include "module/core/variant.h"

namespace zbuffer {

/// Point type and place of an action.
enum class Layer : std::uint8_t {
  float_any,     ///< `2D`: float points anywhere
  float_inside,  ///< `DC`: float points inside the hard clip
  int_any,       ///< `2DI`: whole points anywhere
  int_inside     ///< `DCI`: whole points inside the hard clip
};
/// How a strip or a polyline is coloured: in the rendition's colour, a colour a triangle or
/// segment, a colour a point.
enum class Kind : std::uint8_t { flat, colorized, gouraud };
/// Whether a clip mask hides pixels.
enum class Masking : std::uint8_t { open, masked };
/// Primitives that lie inside the hard clip, or single ones cut by it.
enum class Path : std::uint8_t { inside, clipped };

template <>
inline constexpr std::size_t value_count<Variant> = variant_count;
template <>
inline constexpr std::size_t value_count<Layer> = 4;
template <>
inline constexpr std::size_t value_count<Kind> = 3;
template <>
inline constexpr std::size_t value_count<Masking> = 2;
template <>
inline constexpr std::size_t value_count<Path> = 2;

/// The integer layer that a float layer goes on to.
constexpr Layer integer_layer(Layer layer) {
  return layer == Layer::float_any ? Layer::int_any : Layer::int_inside;
}

/// Whether there is a scan of some properties. Those that there are not are never reached.
enum class Exists : std::uint8_t { no, yes };

/// Calls `use.operator()<kind, masking>()` with all values as constants.
template <class Use>
constexpr void for_all_kinds(Use use) {
  const auto with_masking = [&]<Masking masking>() {
    use.template operator()<Kind::flat, masking>();
    use.template operator()<Kind::colorized, masking>();
    use.template operator()<Kind::gouraud, masking>();
  };
  with_masking.template operator()<Masking::open>();
  with_masking.template operator()<Masking::masked>();
}

/// A routine of strips or polylines.
struct Routine {
  Layer layer;
  Kind kind;
  Variant variant;
  Masking masking = Masking::open;

  constexpr auto properties() const { return std::tuple(layer, kind, variant, masking); }

  constexpr Routine at(Layer other) const { return {other, kind, variant, masking}; }
  constexpr Routine of(Kind other) const { return {layer, other, variant, masking}; }
  constexpr Routine in(Variant other) const { return {layer, kind, other, masking}; }
  constexpr Routine masked() const { return {layer, kind, variant, Masking::masked}; }
};
using Routines = Members<Layer, Kind, Variant, Masking>;

}  // namespace zbuffer
