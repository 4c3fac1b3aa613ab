// The edges of a strip as three flat polylines: along all points, along the even and along the odd
// ones. In device coordinates.
#include "module/lines/strip_edges.h"

#include "module/core/points.h"
#include "module/core/scratch.h"
#include "module/lines/entry.h"

namespace zbuffer::lines {
namespace {

// Edges are drawn opaque, whichever variant the strip is drawn in.
void draw_chain(Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                const KT_DCI_Point* points) {
  constexpr Routine edges{Layer::int_any, Kind::flat, Variant::rgb_z};
  Strip_Call chain = polyline_call(renderer, edges.variant(), rendition, count, points);
  enter(edges, chain);
}

// Every second point from `first` on.
int copy_every_second(const KT_DCI_Point* points, int count, int first, KT_DCI_Point* to) {
  int copied = 0;
  for (int i = first; i < count; i += 2) to[copied++] = points[i];
  return copied;
}

void draw_chains(const Strip_Call& strip, const KT_DCI_Point* points) {
  // The edge bit and all bits above bit 10 go off, so that the lines are drawn as lines.
  constexpr std::uint32_t kept_bits = 0x7FF & ~KT_Advanced_Options::edge_bit;
  Software_Z_Buffer& renderer = strip.renderer;
  KT_Rendition edges = strip.rendition;
  edges.set_advanced_options({strip.misc().advanced_options.bits & kept_bits}, false);
  renderer.edge_depth_offset = strip.face().face_depth_offset;
  draw_chain(renderer, edges, strip.count, points);
  Scratch<KT_DCI_Point> every_second((strip.count + 1) / 2);
  draw_chain(renderer, edges, copy_every_second(points, strip.count, 0, every_second.data()),
             every_second.data());
  if (strip.count > 3) {
    draw_chain(renderer, edges, copy_every_second(points, strip.count, 1, every_second.data()),
               every_second.data());
  }
  renderer.edge_depth_offset = 0;
}

}  // namespace

void draw_strip_edges(const Strip_Call& strip) {
  if (!strip.floats) return draw_chains(strip, strip.points);
  Scratch<KT_DCI_Point> whole(strip.count);
  round_points(strip.floats, strip.count, whole.data());
  draw_chains(strip, whole.data());
}

}  // namespace zbuffer::lines
