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

/// Properties as a member's place in the tables of its family, in one byte. Every layer of a call
/// looks its entry steps up, which this makes a matter of one instruction.
template <class... Properties>
class Place {
 public:
  using Places = Members<Properties...>;

  constexpr explicit Place(Properties... properties)
      : place_(static_cast<std::uint8_t>(Places::index(properties...))) {
    static_assert(Places::count <= 256);
  }

  constexpr std::size_t place() const { return place_; }
  constexpr std::tuple<Properties...> properties() const { return Places::member(place_); }

 protected:
  template <class Enum>
  constexpr Enum property() const {
    return Places::template property<Enum>(place_);
  }
  /// `member` but for one property.
  template <class Member, class Enum>
  static constexpr Member with(Member member, Enum value) {
    member.place_ = static_cast<std::uint8_t>(Places::with(member.place_, value));
    return member;
  }

 private:
  std::uint8_t place_;
};

/// A routine of strips or polylines.
class Routine : public Place<Layer, Kind, Variant, Masking> {
 public:
  constexpr Routine(Layer layer, Kind kind, Variant variant, Masking masking = Masking::open)
      : Place(layer, kind, variant, masking) {}

  constexpr Layer layer() const { return property<Layer>(); }
  constexpr Kind kind() const { return property<Kind>(); }
  constexpr Variant variant() const { return property<Variant>(); }
  constexpr Masking masking() const { return property<Masking>(); }

  constexpr Routine at(Layer other) const { return with(*this, other); }
  constexpr Routine of(Kind other) const { return with(*this, other); }
  constexpr Routine in(Variant other) const { return with(*this, other); }
  constexpr Routine masked() const { return with(*this, Masking::masked); }
};
using Routines = Routine::Places;

}  // namespace zbuffer
