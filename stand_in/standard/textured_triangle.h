// The walk over one textured triangle: rows of texels, lit and in perspective.
//
// The same rows and pixels as the renderer's own triangles have: rows from the lowest y up to the
// row below the highest; in a row from the rounded left edge to the pixel before the rounded right
// one. Values run along the edges from row to row and along the row from edge to edge; a pixel
// that rounding puts outside the triangle has the edge's value.
#pragma once

#include <array>
#include <vector>

#include "stand_in/standard/rows.h"
#include "stand_in/standard/texture.h"

namespace stand_in {

/// What a point carries along edges and rows. All but depth is divided by the point's w, and so
/// is straight on the screen.
struct Carried {
  enum Lane {
    depth,
    unit,  ///< one over w
    s,
    t,
    first_of_light,
    blue = first_of_light,  ///< what texels are multiplied by, four channels
    green,
    red,
    alpha,
    added_blue,  ///< what is added to texels then
    added_green,
    added_red,
    lane_count
  };
  std::array<double, lane_count> lanes = {};

  double& operator[](Lane lane) { return lanes[lane]; }
  double operator[](Lane lane) const { return lanes[lane]; }
};

struct Corner {
  KT_Int_XY at;
  Carried carried;
};

/// The face pattern on textured rows.
class Row_Pattern {
 public:
  Row_Pattern(const KT_Rendition& rendition, KT_Int_XY origin);

  bool is_solid() const { return is_solid_; }
  /// Puts the pattern on a row of visible texels.
  void apply(int x, int y, std::vector<KT_RGB32>& colors, std::vector<std::uint8_t>& visible) const;

 private:
  bool is_solid_;
  bool is_inverted_;
  bool is_opaque_;
  KT_User_Pattern pattern_;
  KT_RGB32 contrast_color_;
  KT_Int_XY origin_;
};

class Textured_Triangles {
 public:
  /// `is_lit`: texels take the colours that corners carry.
  Textured_Triangles(const KT_Renderer_Data& renderer, const KT_Rendition& rendition,
                     const Texture& texture, bool is_lit);

  void draw(const Corner& a, const Corner& b, const Corner& c);

 private:
  struct Edge;

  void draw_rows(const Edge& one, const Edge& other, int first, int end);
  void draw_row(int y, double left, const Carried& from, double right, const Carried& to);
  void put_texel(const Carried& at, std::size_t place);

  const Texture& texture_;
  const KT_Int_Rectangle clip_;
  bool is_lit_;
  Row_Painter painter_;
  Row_Pattern pattern_;
  std::vector<KT_RGB32> colors_;
  std::vector<std::uint8_t> visible_;
};

}  // namespace stand_in
