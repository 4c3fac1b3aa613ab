// Reference model, antialiased lines: three pixels across at every step along the major axis.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tests/differential/model_lines.h"
#include "tests/differential/model_small.h"

namespace model {
namespace {

/// Steps `from` to `end` of the line that leaves `p` by (dx, dy).
void draw_steps(State& state, const KT_Rendition& rendition, bool x_major, const KT_DCI_Point& p,
                int dx, int dy, int from, int end, KT_RGB32 color) {
  const KT_Int_Rectangle& hard = rendition->display_context->hard_clip;
  const int low = x_major ? hard.bottom : hard.left, high = x_major ? hard.top : hard.right;
  const std::int64_t minor_d = x_major ? dy : dx, major_d = std::abs(x_major ? dx : dy);
  const std::int64_t step = major_d == 0 ? 0 : minor_d * 4294967296 / major_d;
  for (int i = from; i < end; ++i) {
    const std::int64_t position = (x_major ? p.y : p.x) * 4294967296 + i * step;
    const int major = x_major ? p.x + (dx < 0 ? -i : i) : p.y + (dy < 0 ? -i : i);
    const auto center = static_cast<int>((position + 0x80000000) >> 32);
    for (int minor = center - 1; minor <= center + 1; ++minor) {
      // Only the neighbours heed the clip, and only across the line.
      if (minor < center && minor < low) continue;
      if (minor > center && minor > high) continue;
      const int x = x_major ? major : minor, y = x_major ? minor : major;
      if (x < 0 || x >= state.color.width || y < 0 || y >= state.color.height) continue;
      if (hidden(state, x, y)) continue;
      const auto distance = static_cast<double>(std::abs(minor * 4294967296 - position) >> 24);
      const int coverage = std::max(0, static_cast<int>(std::floor(256.5 - 0.81793 * distance)));
      const int weight = coverage * (color.alpha * 256 / 255);
      const auto mix = [weight](int s, int d) {
        return static_cast<std::uint8_t>(d + (((s - d) * weight) >> 16));
      };
      auto& pixel = state.color.at<KT_RGB32>(x, y);
      pixel = {mix(color.blue, pixel.blue), mix(color.green, pixel.green),
               mix(color.red, pixel.red), 255};
    }
  }
}

/// A segment of which an end at least lies outside, with the codes of its ends.
void draw_cut(State& state, const KT_Rendition& rendition, const KT_DCI_Point& p,
              const KT_DCI_Point& q, int p_code, int q_code, bool draw_last) {
  const KT_Int_Rectangle& hard = rendition->display_context->hard_clip;
  const KT_RGB32 color = rendition->material->color;
  const int dx = q.x - p.x, dy = q.y - p.y;
  const int adx = std::abs(dx), ady = std::abs(dy);
  KT_DCI_Point ends[2] = {p, q};
  const int codes[2] = {p_code, q_code};
  for (int k = 0; k < 2; ++k) {
    KT_DCI_Point& end = ends[k];
    const KT_DCI_Point before = end;
    if ((codes[k] & 1) != 0 && dx != 0) end.x = hard.left;
    if ((codes[k] & 4) != 0 && dx != 0) end.x = hard.right;
    if (dx != 0) end.y += static_cast<int>(static_cast<std::int64_t>(end.x - before.x) * dy / dx);
    if (end.y >= hard.bottom && end.y <= hard.top) continue;
    end.y = end.y < hard.bottom ? hard.bottom : hard.top;
    if (dy != 0) end.x = p.x + static_cast<int>(static_cast<std::int64_t>(end.y - p.y) * dx / dy);
    if (end.x < hard.left || end.x > hard.right) return;
  }
  const bool x_major = dx != 0 && adx >= ady;
  const int skip = x_major ? std::abs(ends[0].x - p.x) : std::abs(ends[0].y - p.y);
  const int length = x_major ? std::abs(ends[1].x - ends[0].x) : std::abs(ends[1].y - ends[0].y);
  draw_steps(state, rendition, x_major, p, dx, dy, skip, skip + length + draw_last, color);
}

}  // namespace

void draw_antialiased_run(State& state, const KT_Rendition& rendition,
                          const std::vector<KT_DCI_Point>& points,
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

void draw_antialiased_line(State& state, const KT_Rendition& rendition,
                           const std::vector<KT_DCI_Point>& points) {
  const KT_Int_Rectangle& hard = rendition->display_context->hard_clip;
  const std::vector<KT_RGB32> color{rendition->material->color};
  std::vector<KT_DCI_Point> run{points[0]};
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
        if (run.size() > 1) draw_antialiased_run(state, rendition, run, color, false);
        draw_cut(state, rendition, points[j - 1], points[j], before, code,
                 code != 0 || j + 1 == points.size());
      }
      run.clear();
    }
    run.push_back(points[j]);
    before = code;
  }
  if (run.size() > 1) draw_antialiased_run(state, rendition, run, color, true);
}

}  // namespace model
