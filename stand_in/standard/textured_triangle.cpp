// Rows of one textured triangle, in double precision: values are worked out at each row's two
// edges and then run along the row.
#include "stand_in/standard/textured_triangle.h"

#include <algorithm>
#include <cmath>

#include "host/global.h"
#include "stand_in/rounding.h"
#include "stand_in/standard/hatches.h"

namespace stand_in {
namespace {

Carried between(const Carried& from, const Carried& to, double part,
                std::size_t lane_count = Carried::lane_count) {
  Carried result;
  for (std::size_t n = 0; n < lane_count; ++n) {
    result.lanes[n] = from.lanes[n] + (to.lanes[n] - from.lanes[n]) * part;
  }
  return result;
}

std::int32_t remainder_of(std::int64_t value, std::int32_t divisor) {
  const auto rest = static_cast<std::int32_t>(value % divisor);
  return rest < 0 ? rest + divisor : rest;
}

KT_User_Pattern pattern_of(const KT_Face_Attributes& face) {
  const std::int32_t number = face.face_pattern;
  if (number >= KT_Face_Attributes::first_standard) return hatch(number);
  if (number == KT_Face_Attributes::user && face.user_pattern != nullptr) return *face.user_pattern;
  const bool is_of_table = number >= 0 && number < KT_Face_Attributes::user;
  return {KORVEL.face_pattern_table[is_of_table ? number : KT_Face_Attributes::solid], 8, 8, 1};
}

}  // namespace

Row_Pattern::Row_Pattern(const KT_Rendition& rendition, KT_Int_XY origin)
    : pattern_(pattern_of(*rendition->face_attributes)),
      contrast_color_(rendition->material->contrast_color) {
  const KT_Misc_Attributes& misc = *rendition->misc_attributes;
  is_inverted_ = (misc.pattern_options & KT_Misc_Attributes::inverted_pattern_bit) != 0;
  is_opaque_ = (misc.pattern_options & KT_Misc_Attributes::opaque_pattern_bit) != 0;
  is_solid_ =
      pattern_.pattern_width < 1 || pattern_.pattern_height < 1 ||
      (rendition->face_attributes->face_pattern == KT_Face_Attributes::solid && !is_inverted_);
  origin_ = {misc.pattern_origin.x + origin.x, misc.pattern_origin.y + origin.y};
}

void Row_Pattern::apply(int x, int y, std::vector<KT_RGB32>& colors,
                        std::vector<std::uint8_t>& visible) const {
  const std::int32_t line = remainder_of(std::int64_t{y} - origin_.y, pattern_.pattern_height);
  const std::uint8_t* bits =
      pattern_.pattern_bits + std::ptrdiff_t{line} * pattern_.pattern_row_bytes;
  std::int32_t column = remainder_of(std::int64_t{x} - origin_.x, pattern_.pattern_width);
  for (std::size_t n = 0; n < colors.size(); ++n) {
    const bool is_set = (bits[column / 8] >> column % 8 & 1) != 0;
    if (is_set != is_inverted_) {
      if (is_opaque_) colors[n] = contrast_color_;
      visible[n] &= static_cast<std::uint8_t>(is_opaque_);
    }
    if (++column == pattern_.pattern_width) column = 0;
  }
}

struct Textured_Triangles::Edge {
  const Corner& low;
  const Corner& high;

  double part(int y) const {
    return (static_cast<double>(y) - low.at.y) / (static_cast<double>(high.at.y) - low.at.y);
  }
  double x(int y) const { return low.at.x + (static_cast<double>(high.at.x) - low.at.x) * part(y); }
  Carried carried(int y) const { return between(low.carried, high.carried, part(y)); }
};

Textured_Triangles::Textured_Triangles(const KT_Renderer_Data& renderer,
                                       const KT_Rendition& rendition, const Texture& texture,
                                       bool is_lit)
    : texture_(texture),
      clip_(rendition->display_context->hard_clip),
      is_lit_(is_lit),
      painter_(renderer, rendition),
      pattern_(rendition, painter_.origin()) {}

void Textured_Triangles::draw(const Corner& a, const Corner& b, const Corner& c) {
  const Corner* corners[3] = {&a, &b, &c};
  const auto keep_order = [&](int first, int second) {
    if (corners[second]->at.y < corners[first]->at.y) std::swap(corners[first], corners[second]);
  };
  keep_order(0, 1);
  keep_order(1, 2);
  keep_order(0, 1);
  const auto& [low, mid, high] = corners;
  const Edge long_edge = {*low, *high};
  draw_rows(long_edge, {*low, *mid}, low->at.y, mid->at.y);
  draw_rows(long_edge, {*mid, *high}, mid->at.y, high->at.y);
}

/// Rows `first` to the one before `end`, which both edges cross.
void Textured_Triangles::draw_rows(const Edge& one, const Edge& other, int first, int end) {
  first = std::max(first, clip_.bottom);
  const std::int64_t beyond = std::min<std::int64_t>(end, std::int64_t{clip_.top} + 1);
  for (int y = first; y < beyond; ++y) {
    const bool one_is_left = one.x(y) <= other.x(y);
    const Edge& left = one_is_left ? one : other;
    const Edge& right = one_is_left ? other : one;
    draw_row(y, left.x(y), left.carried(y), right.x(y), right.carried(y));
  }
}

void Textured_Triangles::draw_row(int y, double left, const Carried& from, double right,
                                  const Carried& to) {
  const double first = std::max(std::floor(left + 0.5), static_cast<double>(clip_.left));
  const double end = std::min(std::floor(right + 0.5), clip_.right + 1.0);
  if (!(end - first >= 1)) return;

  colors_.resize(static_cast<std::size_t>(end - first));
  visible_.assign(colors_.size(), 1);
  const auto at = [&](std::size_t n, std::size_t lane_count) {
    const double part = (first + static_cast<double>(n) - left) / (right - left);
    return between(from, to, std::clamp(part, 0.0, 1.0), lane_count);
  };
  const std::size_t lane_count = is_lit_ ? Carried::lane_count : Carried::first_of_light;
  for (std::size_t n = 0; n < colors_.size(); ++n) put_texel(at(n, lane_count), n);

  const int x = static_cast<int>(first);
  if (!pattern_.is_solid()) pattern_.apply(x, y, colors_, visible_);
  const std::size_t steps = colors_.size() - 1;
  const double z = at(0, 1)[Carried::depth];
  const double climb = at(steps, 1)[Carried::depth] - z;
  const double z_step = steps > 0 ? climb / static_cast<double>(steps) : 0;
  painter_.draw({x, y, z, z_step, colors_, visible_.data()});
}

void Textured_Triangles::put_texel(const Carried& at, std::size_t place) {
  const double w = 1 / at[Carried::unit];
  const Texel texel = texture_.at(at[Carried::s] * w, at[Carried::t] * w);
  visible_[place] = texel.exists;
  KT_RGB32 color = texel.color;
  if (is_lit_) {
    color.blue = round_to_byte((color.blue * at[Carried::blue] + at[Carried::added_blue]) * w);
    color.green = round_to_byte((color.green * at[Carried::green] + at[Carried::added_green]) * w);
    color.red = round_to_byte((color.red * at[Carried::red] + at[Carried::added_red]) * w);
    color.alpha = round_to_byte(color.alpha * at[Carried::alpha] * w);
  }
  colors_[place] = color;
}

}  // namespace stand_in
