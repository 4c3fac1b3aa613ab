// Wide lines as convex polygons.
//
//      a---------b          Each segment is a polygon of its own. Where two of them meet they are
//      |    0    |\         cut at the inner corner i and share the edge from there to the line's
//      d-----i---p-c        point p; the wedge p b c on the outer side fills the corner by its
//            |   | |        style. So no pixel is drawn twice, unless a turn is too sharp for the
//            | 1 | |        segments' length, and blended lines are even.
//
// Pixel centres lie at whole coordinates. A plain end reaches half a pixel beyond the last point,
// so that wide lines cover the pixels of both their ends as thin ones do.
#pragma once

#include <vector>

#include "stand_in/standard/line.h"

namespace stand_in {

class Stroke {
 public:
  /// The width and the styles are those of the job's rendition.
  explicit Stroke(const Line_Job& job);

  double half_width() const { return half_width_; }
  void draw(std::span<const Vertex> line, Piece_Ends ends = {});

 private:
  struct Direction {
    double x = 0;
    double y = 0;
    double length = 0;
  };
  /// The corner between two segments.
  struct Corner {
    Direction from, to;
    double cosine = 1;   // of the turn
    int inner_side = 0;  // 1: the line turns left, -1: right
    double inner_x = 0;  // from the line's point to the inner corner
    double inner_y = 0;
    bool is_cut = false;  // both segments are long enough for the inner corner
  };
  struct End {
    const Corner* corner = nullptr;  // null: an end of the line
    double reach = 0;                // beyond the line's point; 0 at a corner or a round end

    /// Whether what lies beyond has a vertex at the line's point.
    bool shares_centre() const { return reach == 0; }
  };

  Corner corner_between(const Direction& from, const Direction& to) const;
  void draw_segment(const Vertex& from, const Vertex& to, const Direction& along, End start,
                    End end);
  void add_side(const Vertex& at, const Direction& along, const End& end, int sign);
  void draw_corner(const Vertex& at, const Corner& corner);
  void draw_cap(const Vertex& at, const Direction& outward);
  void draw_dot(const Vertex& at);
  void draw_arc(const Vertex& center, double x, double y, double turn);
  void draw_wedge(const Vertex& at, double from_x, double from_y, double to_x, double to_y);
  void add(const Vertex& at, double x, double y);
  void fill();

  const Line_Job& job_;
  double half_width_;
  std::int32_t corner_style_;
  std::int32_t first_end_style_;
  std::int32_t last_end_style_;
  std::vector<Vertex> outline_;  // of the polygon at hand
};

}  // namespace stand_in
