// Polylines that renderers leave to the framework: wide ones become polygons, patterned ones a
// solid polyline a dash.
#include <algorithm>
#include <cmath>
#include <vector>

#include "stand_in/rounding.h"
#include "stand_in/standard/angles.h"
#include "stand_in/standard/calls.h"
#include "stand_in/standard/dashes.h"
#include "stand_in/standard/stroke.h"

namespace stand_in {
namespace {

/// The three polyline actions of one kind of points.
template <KT_Action plain, KT_Action colorized, KT_Action gouraud>
struct Thin_Actions {
  static void draw(const KT_Renderer_Data& renderer, const KT_Rendition& rendition,
                   Coloring coloring, int count, const KT_DCI_Point* points,
                   const KT_RGB32* colors) {
    switch (coloring) {
      case Coloring::plain:
        return call_own<plain>(renderer, rendition, count, points);
      case Coloring::single:
        return call_own<colorized>(renderer, rendition, count, points, colors, true);
      case Coloring::by_segment:
        return call_own<colorized>(renderer, rendition, count, points, colors, false);
      case Coloring::by_point:
        return call_own<gouraud>(renderer, rendition, count, points, colors);
    }
  }
};

using Thin_2DI = Thin_Actions<KT_Action::Draw_2DI_Polyline, KT_Action::Draw_2DI_Colorized_Polyline,
                              KT_Action::Draw_2DI_Gouraud_Polyline>;
using Thin_DCI = Thin_Actions<KT_Action::Draw_DCI_Polyline, KT_Action::Draw_DCI_Colorized_Polyline,
                              KT_Action::Draw_DCI_Gouraud_Polyline>;

/// A call of any of the actions.
struct Polyline {
  const KT_Renderer_Data& renderer;
  const KT_Rendition& rendition;
  int count;
  const KT_DCI_Point* points;
  Coloring coloring;
  const KT_RGB32* colors;

  std::vector<Vertex> vertices() const {
    std::vector<Vertex> all;
    for (int n = 0; n < count; ++n) {
      const KT_DCI_Point& p = points[n];
      all.push_back({static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z),
                     color_of(n)});
    }
    return all;
  }

 private:
  KT_RGB32 color_of(int n) const {
    switch (coloring) {
      case Coloring::single:
        return colors[0];
      case Coloring::by_segment:
        return colors[std::min(n, count - 2)];
      case Coloring::by_point:
        return colors[n];
      default:
        return {};
    }
  }
};

/// A solid line is what is made of dashes.
KT_Rendition solid_lines(const KT_Rendition& source) {
  KT_Rendition rendition = source;
  rendition.edit(&KT_Rendition_Data::line_attributes).line_pattern = 0;
  return rendition;
}

/// The rendition of the polygons that wide lines become: filled, not drawn as edges; solid unless
/// the line takes the face pattern.
KT_Rendition filled_lines(const KT_Rendition& source) {
  KT_Rendition rendition = source;
  KT_Advanced_Options options = source->misc_attributes->advanced_options;
  options.bits &= ~KT_Advanced_Options::edge_bit;
  rendition.set_advanced_options(options, false);
  if (source->line_attributes->line_flag_a == 0) {
    rendition.edit(&KT_Rendition_Data::face_attributes).face_pattern = KT_Face_Attributes::solid;
    rendition.edit(&KT_Rendition_Data::misc_attributes).pattern_options = 0;
  }
  return rendition;
}

bool has_length(const std::vector<Vertex>& line) {
  return std::any_of(line.begin(), line.end(),
                     [&](const Vertex& v) { return !same_place(v, line.front()); });
}

template <class Thin>
void draw_thin_piece(const Line_Job& job, std::span<const Vertex> piece) {
  std::vector<KT_DCI_Point> points;
  std::vector<KT_RGB32> colors;
  for (const Vertex& v : piece) {
    points.push_back(round_to_pixel(KT_Point_D{v.x, v.y, v.z}));
    colors.push_back(v.color);
  }
  if (piece.size() == 1) {  // a dash of one pixel
    points.push_back(points[0]);
    colors.push_back(colors[0]);
  }
  Thin::draw(job.renderer, job.rendition, job.coloring, static_cast<int>(points.size()),
             points.data(), colors.data());
}

/// Thin lines count pixels, along the axis that has more of them.
template <class Thin>
void draw_thin_dashes(const Polyline& polyline) {
  const std::vector<Vertex> line = polyline.vertices();
  const Line_Job job = {polyline.renderer, solid_lines(polyline.rendition), polyline.coloring};
  if (!has_length(line)) return draw_thin_piece<Thin>(job, line);
  Dash_Cutter cutter(
      dash_pattern(polyline.rendition->line_attributes->line_pattern), 1,
      job.rendition->display_context->hard_clip, 1, job.coloring,
      [&](std::span<const Vertex> piece, Piece_Ends) { draw_thin_piece<Thin>(job, piece); });
  for (std::size_t n = 0; n + 1 < line.size(); ++n) {
    const Vertex& from = line[n];
    const Vertex& to = line[n + 1];
    cutter.segment(from, to, std::max(std::abs(to.x - from.x), std::abs(to.y - from.y)));
  }
  cutter.finish();
}

void draw_wide(const Polyline& polyline) {
  const std::vector<Vertex> line = polyline.vertices();
  const Line_Job job = {polyline.renderer, filled_lines(polyline.rendition), polyline.coloring};
  const KT_Line_Attributes& attributes = *polyline.rendition->line_attributes;
  Stroke stroke(job);
  if (attributes.line_pattern == 0 || !has_length(line)) return stroke.draw(line);

  Dash_Cutter cutter(dash_pattern(attributes.line_pattern), attributes.line_weight,
                     job.rendition->display_context->hard_clip, 4 * stroke.half_width(),
                     job.coloring, [&](std::span<const Vertex> piece, Piece_Ends ends) {
                       if (piece.size() > 1) stroke.draw(piece, ends);
                     });
  for (std::size_t n = 0; n + 1 < line.size(); ++n) {
    const Vertex& from = line[n];
    const Vertex& to = line[n + 1];
    cutter.segment(from, to, length_of(to.x - from.x, to.y - from.y));
  }
  cutter.finish();
}

template <class Thin>
void draw(const Polyline& polyline) {
  if (polyline.count < 2) return;
  const KT_Line_Attributes& attributes = *polyline.rendition->line_attributes;
  if (attributes.line_weight > 1) return draw_wide(polyline);
  if (attributes.line_pattern != 0) return draw_thin_dashes<Thin>(polyline);
  Thin::draw(polyline.renderer, polyline.rendition, polyline.coloring, polyline.count,
             polyline.points, polyline.colors);
}

/// A single colour that is not given is the rendition's.
Coloring coloring_of(const KT_RGB32* colors, bool single_color) {
  if (colors == nullptr) return Coloring::plain;
  return single_color ? Coloring::single : Coloring::by_segment;
}

Coloring shading_of(const KT_RGB32* colors) {
  return colors == nullptr ? Coloring::plain : Coloring::by_point;
}

}  // namespace
}  // namespace stand_in

using stand_in::Coloring;

void KD_Standard_Draw_2DI_Polyline(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                   int count, const KT_DCI_Point* points) {
  stand_in::draw<stand_in::Thin_2DI>(
      {*renderer, rendition, count, points, Coloring::plain, nullptr});
}

void KD_Standard_Draw_DCI_Polyline(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                   int count, const KT_DCI_Point* points) {
  stand_in::draw<stand_in::Thin_DCI>(
      {*renderer, rendition, count, points, Coloring::plain, nullptr});
}

void KD_Standard_Draw_2DI_Colorized_Polyline(KT_Renderer_Data* renderer,
                                             const KT_Rendition& rendition, int count,
                                             const KT_DCI_Point* points, const KT_RGB32* colors,
                                             bool single_color) {
  stand_in::draw<stand_in::Thin_2DI>(
      {*renderer, rendition, count, points, stand_in::coloring_of(colors, single_color), colors});
}

void KD_Standard_Draw_DCI_Colorized_Polyline(KT_Renderer_Data* renderer,
                                             const KT_Rendition& rendition, int count,
                                             const KT_DCI_Point* points, const KT_RGB32* colors,
                                             bool single_color) {
  stand_in::draw<stand_in::Thin_DCI>(
      {*renderer, rendition, count, points, stand_in::coloring_of(colors, single_color), colors});
}

void KD_Standard_Draw_2DI_Gouraud_Polyline(KT_Renderer_Data* renderer,
                                           const KT_Rendition& rendition, int count,
                                           const KT_DCI_Point* points, const KT_RGB32* colors) {
  stand_in::draw<stand_in::Thin_2DI>(
      {*renderer, rendition, count, points, stand_in::shading_of(colors), colors});
}

void KD_Standard_Draw_DCI_Gouraud_Polyline(KT_Renderer_Data* renderer,
                                           const KT_Rendition& rendition, int count,
                                           const KT_DCI_Point* points, const KT_RGB32* colors) {
  stand_in::draw<stand_in::Thin_DCI>(
      {*renderer, rendition, count, points, stand_in::shading_of(colors), colors});
}
