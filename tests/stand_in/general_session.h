// A renderer whose general routines are tested: a window beside the origin, places in it, and
// shorthands for what the routines draw.
#pragma once

#include "tests/support/session.h"

namespace general {

using namespace support;
using enum KT_Action;
using Points = std::vector<KT_DCI_Point>;
using Picture = std::vector<std::string>;

inline constexpr KT_Int_XY origin{-7, 5};
inline constexpr KT_Int_XY full_size{64, 48};

struct General : Session {
  explicit General(Variant variant = Variant::rgb, KT_Int_XY size = full_size)
      : Session({.variant = variant, .size = size, .origin = origin}) {}

  KT_Line_Attributes& line() { return rendition.edit(&KT_Rendition_Data::line_attributes); }
  void set_marker(int symbol) {
    rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = symbol;
  }
  /// Device coordinates of a place in the window.
  static KT_DCI_Point at(int x, int y, int z = 0) { return {x + origin.x, y + origin.y, z}; }
  static Points at(Points points) {
    for (KT_DCI_Point& p : points) p = at(p.x, p.y, p.z);
    return points;
  }
  static KT_Int_Rectangle at(const KT_Int_Rectangle& r) {
    return {r.left + origin.x, r.right + origin.x, r.bottom + origin.y, r.top + origin.y};
  }

  /// Calls an action with points by their places.
  template <KT_Action action, class... Arguments>
  void draw(const Points& points, Arguments... arguments) const {
    call<action>(at(points), arguments...);
  }
  Picture picture() const { return drawn(*color); }
  KT_RGB32 pixel(int x, int y) const { return KT_RGB32::from_word(color->at(x, y)); }
  /// Whether all that is drawn lies in `r`.
  testing::AssertionResult stays_in(const KT_Int_Rectangle& r) const {
    for (int i = 0; i < color->width * color->height; ++i) {
      const int x = i % color->width, y = i / color->width;
      if (lies_in(r, x, y) || !color->touched(x, y)) continue;
      return testing::AssertionFailure() << "drawn at " << x << ", " << y;
    }
    return testing::AssertionSuccess();
  }
};

/// All that is drawn is drawn of the other as well, and the other has more.
inline bool is_part(const Picture& part, const Picture& whole) {
  bool any = false, more = false;
  for (std::size_t y = 0; y < part.size(); ++y) {
    for (std::size_t x = 0; x < part[y].size(); ++x) {
      if (part[y][x] == '#' && whole[y][x] != '#') return false;
      any = any || part[y][x] == '#';
      more = more || part[y][x] != whole[y][x];
    }
  }
  return any && more;
}

}  // namespace general
