#include "module/lines/strip_edges.h"

#include "module/core/fixed_point.h"
#include "module/core/scratch.h"
#include "module/lines/instances.h"

namespace zbuffer {
namespace {

// Edges are drawn opaque, whichever variant the strip is drawn in.
void draw_chain(Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                const KT_DCI_Point* points) {
  lines::enter<lines::Layer::any, Variant::rgb_z, lines::Kind::plain>(
      {renderer, rendition, count, points});
}

// Every second point from `first` on.
int copy_every_second(const KT_DCI_Point* points, int count, int first, KT_DCI_Point* to) {
  int copied = 0;
  for (int i = first; i < count; i += 2) to[copied++] = points[i];
  return copied;
}

}  // namespace

void draw_strip_edges(Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                      const KT_DCI_Point* points) {
  // The edge bit and all bits above bit 10 go off, so that the lines are drawn as lines.
  constexpr std::uint32_t kept_bits = 0x7DF;
  KT_Rendition edges = rendition;
  edges.set_advanced_options({rendition->misc_attributes->advanced_options.bits & kept_bits},
                             false);
  renderer.edge_depth_offset = rendition->face_attributes->face_depth_offset;
  draw_chain(renderer, edges, count, points);
  Scratch<KT_DCI_Point> every_second((count + 1) / 2);
  draw_chain(renderer, edges, copy_every_second(points, count, 0, every_second.data()),
             every_second.data());
  if (count > 3) {
    draw_chain(renderer, edges, copy_every_second(points, count, 1, every_second.data()),
               every_second.data());
  }
  renderer.edge_depth_offset = 0;
}

void draw_strip_edges(Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                      const KT_Point* points) {
  Scratch<KT_DCI_Point> whole(count);
  for (int i = 0; i < count; ++i) {
    whole[i] = {rounded(points[i].x), rounded(points[i].y), rounded(points[i].z)};
  }
  draw_strip_edges(renderer, rendition, count, whole.data());
}

}  // namespace zbuffer
