// Geometry of wide lines in device coordinates: segments, corners and ends as convex polygons that
// do not overlap, so that blended lines are even.
#include "stand_in/standard/stroke.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/application.h"
#include "stand_in/standard/angles.h"
#include "stand_in/standard/polygon_fill.h"

namespace stand_in {
namespace {

constexpr double half_pixel = 0.5;
/// A sharp corner's tip is this many times as far from the line as the line's edge, at most.
constexpr double longest_miter = 4;
/// How far an arc's chords may lie inside it, in pixels.
constexpr double arc_tolerance = 0.2;

double cross(double ax, double ay, double bx, double by) {
  return ax * by - ay * bx;
}

/// The line without places that repeat the one before; the later one's colour and depth count.
std::vector<Vertex> without_repeats(std::span<const Vertex> line) {
  std::vector<Vertex> places;
  for (const Vertex& v : line) {
    if (!places.empty() && same_place(places.back(), v)) places.pop_back();
    places.push_back(v);
  }
  return places;
}

}  // namespace

Stroke::Stroke(const Line_Job& job)
    : job_(job),
      half_width_(job.rendition->line_attributes->line_weight / 2.0),
      corner_style_(job.rendition->line_attributes->line_corner_style),
      first_end_style_(job.rendition->line_attributes->line_end_style_a),
      last_end_style_(job.rendition->line_attributes->line_end_style_b) {}

void Stroke::draw(std::span<const Vertex> line, Piece_Ends ends) {
  const std::vector<Vertex> places = without_repeats(line);
  if (places.size() < 2) {
    if (!places.empty()) draw_dot(places[0]);
    return;
  }
  const std::size_t segments = places.size() - 1;
  std::vector<Direction> ways(segments);
  for (std::size_t n = 0; n < segments; ++n) {
    const double x = places[n + 1].x - places[n].x;
    const double y = places[n + 1].y - places[n].y;
    const double length = length_of(x, y);
    ways[n] = {x / length, y / length, length};
  }
  // Corner n lies at the end of segment n; that of the last segment closes a closed line.
  const bool closed =
      ends.first && ends.last && segments > 2 && same_place(places.front(), places.back());
  std::vector<Corner> corners(segments);
  for (std::size_t n = 0; n + (closed ? 0 : 1) < segments; ++n) {
    corners[n] = corner_between(ways[n], ways[(n + 1) % segments]);
  }

  const auto reach_of = [&](bool is_line_end, std::int32_t style) {
    if (!is_line_end || style == KT_Line_Style::flat_end) return half_pixel;
    return style == KT_Line_Style::square_end ? half_width_ : 0;
  };
  const End first = closed ? End{&corners[segments - 1], 0}
                           : End{nullptr, reach_of(ends.first, first_end_style_)};
  const End last =
      closed ? End{&corners[segments - 1], 0} : End{nullptr, reach_of(ends.last, last_end_style_)};
  for (std::size_t n = 0; n < segments; ++n) {
    draw_segment(places[n], places[n + 1], ways[n], n > 0 ? End{&corners[n - 1], 0} : first,
                 n + 1 < segments ? End{&corners[n], 0} : last);
    if (n + 1 < segments || closed) {
      Vertex at = places[n + 1];
      if (job_.coloring != Coloring::by_point) at.color = places[n].color;
      draw_corner(at, corners[n]);
    }
  }
  if (closed) return;
  if (first.reach == 0) draw_cap(places[0], {-ways[0].x, -ways[0].y, 0});
  if (last.reach == 0) {
    Vertex at = places[segments];
    if (job_.coloring != Coloring::by_point) at.color = places[segments - 1].color;
    draw_cap(at, ways[segments - 1]);
  }
}

Stroke::Corner Stroke::corner_between(const Direction& from, const Direction& to) const {
  Corner corner;
  corner.from = from;
  corner.to = to;
  corner.cosine = from.x * to.x + from.y * to.y;
  const double sine = cross(from.x, from.y, to.x, to.y);
  if (sine == 0 && corner.cosine > 0) return corner;  // straight on
  corner.inner_side = sine >= 0 ? 1 : -1;
  // The inner corner lies half_width * tan(turn / 2) back along either segment.
  const double setback = half_width_ * std::abs(sine);
  const double room = std::min(from.length, to.length) / 2 * (1 + corner.cosine);
  if (setback >= room) return corner;
  corner.is_cut = true;
  const double scale = corner.inner_side * half_width_ / (1 + corner.cosine);
  corner.inner_x = -(from.y + to.y) * scale;
  corner.inner_y = (from.x + to.x) * scale;
  return corner;
}

void Stroke::draw_segment(const Vertex& from, const Vertex& to, const Direction& along, End start,
                          End end) {
  Vertex last = to;
  if (job_.coloring != Coloring::by_point) last.color = from.color;
  const Direction back = {-along.x, -along.y, along.length};
  // What has a vertex at the line's point goes by halves, so that each is convex. Seen backwards,
  // the left side is the right one.
  const bool is_halved = start.shares_centre() || end.shares_centre();
  for (int side : {-1, 1}) {
    add_side(from, back, start, -side);
    if (is_halved) {
      add(from, back.x * start.reach, back.y * start.reach);
      add(last, along.x * end.reach, along.y * end.reach);
    } else {
      add_side(from, back, start, side);
      add_side(last, along, end, -side);
    }
    add_side(last, along, end, side);
    fill();
    if (!is_halved) return;
  }
}

/// One side's corner of a segment at one of its ends; `along` leads out of the segment there, and
/// `sign` is 1 for what is left as seen along it.
void Stroke::add_side(const Vertex& at, const Direction& along, const End& end, int sign) {
  if (end.corner != nullptr && end.corner->is_cut) {
    const Corner& corner = *end.corner;
    if (cross(along.x, along.y, corner.inner_x, corner.inner_y) * sign > 0) {
      return add(at, corner.inner_x, corner.inner_y);
    }
  }
  add(at, along.x * end.reach - along.y * half_width_ * sign,
      along.y * end.reach + along.x * half_width_ * sign);
}

void Stroke::draw_corner(const Vertex& at, const Corner& corner) {
  if (corner.inner_side == 0) return;
  const double outward = -corner.inner_side * half_width_;
  if (corner_style_ == KT_Line_Style::round_corner) {
    const double turn = arc_cosine(std::clamp(corner.cosine, -1.0, 1.0)) * corner.inner_side;
    return draw_arc(at, -corner.from.y * outward, corner.from.x * outward, turn);
  }
  // The tip's distance is the half width over the cosine of half the turn.
  const double half_turn_square = (1 + corner.cosine) / 2;
  const bool has_tip = corner_style_ != KT_Line_Style::bevelled_corner &&
                       half_turn_square * longest_miter * longest_miter >= 1;
  const double scale = has_tip ? outward / (1 + corner.cosine) : 0;
  const double tip_x = -(corner.from.y + corner.to.y) * scale;
  const double tip_y = (corner.from.x + corner.to.x) * scale;
  const double first_x = -corner.from.y * outward;
  const double first_y = corner.from.x * outward;
  const double last_x = -corner.to.y * outward;
  const double last_y = corner.to.x * outward;
  if (!has_tip) return draw_wedge(at, first_x, first_y, last_x, last_y);
  draw_wedge(at, first_x, first_y, tip_x, tip_y);
  draw_wedge(at, tip_x, tip_y, last_x, last_y);
}

void Stroke::draw_cap(const Vertex& at, const Direction& outward) {
  draw_arc(at, outward.y * half_width_, -outward.x * half_width_, std::numbers::pi);
}

/// A line without length.
void Stroke::draw_dot(const Vertex& at) {
  if (first_end_style_ == KT_Line_Style::round_end)
    return draw_arc(at, half_width_, 0, 2 * std::numbers::pi);
  add(at, -half_width_, -half_width_);
  add(at, half_width_, -half_width_);
  add(at, half_width_, half_width_);
  add(at, -half_width_, half_width_);
  fill();
}

/// A sector of a disc, from the point (x, y) beside its centre on.
void Stroke::draw_arc(const Vertex& center, double x, double y, double turn) {
  const double finest = 2 * arc_cosine(1 - std::min(arc_tolerance / half_width_, 0.25));
  const int steps = std::max(static_cast<int>(std::ceil(std::abs(turn) / finest)), 1);
  const auto place = [&](int step) {
    const auto [sine, cosine] = sine_cosine(turn * step / steps);
    return std::pair(x * cosine - y * sine, y * cosine + x * sine);
  };
  for (int step = 0; step < steps; ++step) {
    const auto [from_x, from_y] = place(step);
    const auto [to_x, to_y] = place(step + 1);
    draw_wedge(center, from_x, from_y, to_x, to_y);
  }
}

// Wedges that make up a sector are triangles each: with its corners rounded to pixels, the sector
// as a whole need not be convex any more.
void Stroke::draw_wedge(const Vertex& at, double from_x, double from_y, double to_x, double to_y) {
  add(at, 0, 0);
  add(at, from_x, from_y);
  add(at, to_x, to_y);
  fill();
}

void Stroke::add(const Vertex& at, double x, double y) {
  outline_.push_back({at.x + x, at.y + y, at.z, at.color});
}

void Stroke::fill() {
  fill_convex(job_, outline_);
  outline_.clear();
}

}  // namespace stand_in
