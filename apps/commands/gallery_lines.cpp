// Polylines, dots and markers for the gallery.

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "apps/commands/gallery_families.h"

namespace kv {
namespace {

using Pixels = std::vector<KT_DCI_Point>;
using Colors = std::vector<KT_RGB32>;

// Steep and level, up and down, both ways.
Pixels zigzag(const Brush& brush) {
  return {brush.pixel_at(0.08f, 0.15f), brush.pixel_at(0.25f, 0.90f), brush.pixel_at(0.40f, 0.12f),
          brush.pixel_at(0.40f, 0.80f), brush.pixel_at(0.92f, 0.90f), brush.pixel_at(0.55f, 0.45f),
          brush.pixel_at(0.92f, 0.45f), brush.pixel_at(0.60f, 0.10f)};
}

void plain_line(Brush& brush) {
  const Pixels points = zigzag(brush);
  brush.call_list<KT_Action::Draw_2DI_Polyline>(points);
}

void colorized_line(Brush& brush) {
  const Pixels points = zigzag(brush);
  const Colors colors = brush.colors(points.size() - 1);
  brush.call_list<KT_Action::Draw_2DI_Colorized_Polyline>(points, colors.data(), false);
}

void gouraud_line(Brush& brush) {
  const Pixels points = zigzag(brush);
  const Colors colors = brush.colors(points.size());
  brush.call_list<KT_Action::Draw_2DI_Gouraud_Polyline>(points, colors.data());
}

KT_Line_Attributes& line_of(Brush& brush) {
  return brush.rendition.edit(&KT_Rendition_Data::line_attributes);
}

void antialiased_line(Brush& brush) {
  brush.add_option(KT_Advanced_Options::antialias_bit);
  plain_line(brush);
}

void dashed_line(Brush& brush) {
  line_of(brush).line_pattern = 1;
  gouraud_line(brush);
}

void wide_line(Brush& brush) {
  line_of(brush).line_weight = 7;
  plain_line(brush);
}

void wide_round_line(Brush& brush) {
  line_of(brush).line_weight = 9;
  line_of(brush).line_corner_style = KT_Line_Style::round_corner;
  line_of(brush).line_end_style_a = KT_Line_Style::round_end;
  line_of(brush).line_end_style_b = KT_Line_Style::round_end;
  gouraud_line(brush);
}

void wide_patterned_line(Brush& brush) {
  line_of(brush).line_weight = 9;
  line_of(brush).line_flag_a = 1;  // takes the pattern of faces
  plain_line(brush);
}

void wide_dashed_line(Brush& brush) {
  line_of(brush).line_weight = 5;
  line_of(brush).line_pattern = 3;
  plain_line(brush);
}

void draw_outlined(Brush& brush, int weight) {
  line_of(brush).line_weight = weight;
  KT_RGB32 rim = brush.color(2), core = brush.color(3);
  brush.rendition.edit(&KT_Rendition_Data::material).basic_material =
      KD_Outlined_Material(2, rim, core);
  plain_line(brush);
}

constexpr Primitive line_list[] = {
    {"thin", plain_line},
    {"colorized", colorized_line},
    {"Gouraud", gouraud_line},
    {"antialiased", antialiased_line},
    {"dashed, Gouraud", dashed_line},
    {"wide", wide_line},
    {"wide, round, Gouraud", wide_round_line},
    {"wide with the face pattern", wide_patterned_line},
    {"wide, dashed", wide_dashed_line},
    {"outlined", [](Brush& brush) { draw_outlined(brush, 1); }},
    {"wide, outlined", [](Brush& brush) { draw_outlined(brush, 5); }}};

Pixels spiral(const Brush& brush, int count) {
  Pixels points;
  for (int i = 0; i < count; ++i) {
    const float part = static_cast<float>(i) / static_cast<float>(count);
    const float angle = 9 * 2 * std::numbers::pi_v<float> * part;
    points.push_back(brush.pixel_at(0.5f + 0.45f * part * std::cos(angle),
                                    0.5f + 0.45f * part * std::sin(angle)));
  }
  return points;
}

// A dot trusts its caller for the window.
void dots(Brush& brush) {
  int number = 0;
  for (const KT_DCI_Point& point : spiral(brush, 900)) {
    const KT_RGB32 color = brush.color(number++ / 40);
    if (brush.in_window(point)) brush.call<KT_Action::Draw_DCI_Dot>(&point, &color);
  }
}

void dots_without_color(Brush& brush) {
  for (const KT_DCI_Point& point : spiral(brush, 900))
    if (brush.in_window(point))
      brush.call<KT_Action::Draw_DCI_Dot>(&point, static_cast<const KT_RGB32*>(nullptr));
}

void pixel_markers(Brush& brush) {
  const Pixels points = spiral(brush, 900);
  brush.call_list<KT_Action::Draw_2DI_Polymarker>(points);
}

void draw_symbols(Brush& brush, int first, int last) {
  for (int symbol = first; symbol <= last; ++symbol) {
    const int place = symbol - first;
    brush.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = symbol;
    brush.set_color(brush.color(symbol));
    const float v = 0.9f - 0.8f * static_cast<float>(place) / static_cast<float>(last - first);
    const std::array points = {brush.pixel_at(0.15f, v), brush.pixel_at(0.5f, v),
                               brush.pixel_at(0.85f, v)};
    brush.call_list<KT_Action::Draw_2DI_Polymarker>(points);
  }
}

constexpr int first_symbol = KT_Marker_Symbol::dot, last_hollow = KT_Marker_Symbol::star;

constexpr Primitive marker_list[] = {
    {"dots in colours", dots},
    {"dots in the rendition's colour", dots_without_color},
    {"markers of a pixel", pixel_markers},
    {"hollow symbols", [](Brush& brush) { draw_symbols(brush, first_symbol, last_hollow); }},
    {"filled symbols", [](Brush& brush) {
       draw_symbols(brush, first_symbol + KT_Marker_Symbol::filled,
                    last_hollow + KT_Marker_Symbol::filled);
     }}};

}  // namespace

std::span<const Primitive> line_primitives() {
  return line_list;
}

std::span<const Primitive> marker_primitives() {
  return marker_list;
}

}  // namespace kv
