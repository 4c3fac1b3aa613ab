// Reference model, antialiased lines: three pixels across at every step along the major axis.
// Positions across have 32 fraction bits.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tests/differential/model_lines.h"

namespace model {
namespace {

constexpr std::int64_t one = std::int64_t{1} << 32;

/// Steps `from` to `end` of the line that leaves `p` by (dx, dy).
void draw_steps(State& state, const KT_Rendition_Data& rendition, bool x_major,
                const KT_DCI_Point& p, int dx, int dy, int from, int end, KT_RGB32 color) {
  const KT_Int_Rectangle& hard = rendition.display_context->hard_clip;
  const int low = x_major ? hard.bottom : hard.left, high = x_major ? hard.top : hard.right;
  const std::int64_t minor_d = x_major ? dy : dx, major_d = std::abs(x_major ? dx : dy);
  const std::int64_t step = major_d == 0 ? 0 : minor_d * one / major_d;
  for (int i = from; i < end; ++i) {
    const std::int64_t position = (x_major ? p.y : p.x) * one + i * step;
    const int major = x_major ? p.x + (dx < 0 ? -i : i) : p.y + (dy < 0 ? -i : i);
    const auto center = static_cast<int>((position + one / 2) >> 32);
    for (int minor = center - 1; minor <= center + 1; ++minor) {
      // Only the neighbours heed the clip, and only across the line.
      if (minor < center && minor < low) continue;
      if (minor > center && minor > high) continue;
      const int x = x_major ? major : minor, y = x_major ? minor : major;
      if (!state.color.holds(x, y) || state.hidden(x, y)) continue;
      const auto distance = static_cast<double>(std::abs(minor * one - position) >> 24);
      const int coverage = std::max(0, static_cast<int>(std::floor(256.5 - 0.81793 * distance)));
      auto& pixel = state.color.at<KT_RGB32>(x, y);
      pixel = blend_by(coverage * weight_of(color.alpha), pixel, color);
    }
  }
}

/// A segment of which an end at least lies outside, with the codes of its ends.
void draw_cut(State& state, const KT_Rendition_Data& rendition, const KT_DCI_Point& p,
              const KT_DCI_Point& q, int p_code, int q_code, bool draw_last) {
  const KT_Int_Rectangle& hard = rendition.display_context->hard_clip;
  const int dx = q.x - p.x, dy = q.y - p.y;
  KT_DCI_Point ends[2] = {p, q};
  const int codes[2] = {p_code, q_code};
  const auto scaled = [](int a, int b, int c) {
    return static_cast<int>(static_cast<std::int64_t>(a) * b / c);
  };
  for (int k = 0; k < 2; ++k) {
    KT_DCI_Point& end = ends[k];
    if ((codes[k] & 5) != 0 && dx != 0) {
      const int x = (codes[k] & 4) != 0 ? hard.right : hard.left;
      end = {x, end.y + scaled(x - end.x, dy, dx), 0};
    }
    if (end.y >= hard.bottom && end.y <= hard.top) continue;
    end.y = end.y < hard.bottom ? hard.bottom : hard.top;
    if (dy != 0) end.x = p.x + scaled(end.y - p.y, dx, dy);
    if (end.x < hard.left || end.x > hard.right) return;
  }
  const bool x_major = dx != 0 && std::abs(dx) >= std::abs(dy);
  const auto steps_between = [&](const KT_DCI_Point& a, const KT_DCI_Point& b) {
    return x_major ? std::abs(b.x - a.x) : std::abs(b.y - a.y);
  };
  const int skip = steps_between(p, ends[0]);
  draw_steps(state, rendition, x_major, p, dx, dy, skip,
             skip + steps_between(ends[0], ends[1]) + draw_last, rendition.material->color);
}

}  // namespace

void draw_antialiased_run(State& state, const KT_Rendition_Data& rendition, const Points& points,
                          const std::vector<KT_RGB32>& segment_colors, bool draw_last) {
  for (std::size_t j = 0; j + 1 < points.size(); ++j) {
    const KT_DCI_Point& p = points[j];
    const int dx = points[j + 1].x - p.x, dy = points[j + 1].y - p.y;
    const int length = std::max(std::abs(dx), std::abs(dy));
    const bool last = draw_last && j + 2 == points.size();
    draw_steps(state, rendition, std::abs(dx) >= std::abs(dy), p, dx, dy, 0, length + last,
               segment_colors[std::min(j, segment_colors.size() - 1)]);
  }
}

void draw_antialiased_line(State& state, const KT_Rendition_Data& rendition, const Points& points) {
  const KT_Int_Rectangle& hard = rendition.display_context->hard_clip;
  const std::vector<KT_RGB32> color{rendition.material->color};
  Points run{points[0]};
  // On the first point alone the right and the top bound count as outside.
  const auto code_of = [&](const KT_DCI_Point& p, int bound) {
    return (p.x < hard.left) + 2 * (p.y > hard.top - bound) + 4 * (p.x > hard.right - bound) +
           8 * (p.y < hard.bottom);
  };
  int before = code_of(points[0], 1);
  for (std::size_t j = 1; j < points.size(); ++j) {
    const int code = code_of(points[j], 0);
    if ((before | code) != 0) {
      if ((before & code) == 0) {
        draw_antialiased_run(state, rendition, run, color, false);
        draw_cut(state, rendition, points[j - 1], points[j], before, code,
                 code != 0 || j + 1 == points.size());
      }
      run.clear();
    }
    run.push_back(points[j]);
    before = code;
  }
  draw_antialiased_run(state, rendition, run, color, true);
}

}  // namespace model
