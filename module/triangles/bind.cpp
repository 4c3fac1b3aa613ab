#include "module/triangles/bind.h"

namespace zbuffer {

void bind_polytriangles(Software_Z_Buffer& renderer, Variant variant) {
  constexpr void (*by_variant[variant_count])(Software_Z_Buffer&) = {
      bind_polytriangles_of<Variant::rgb_alpha>,   bind_polytriangles_of<Variant::rgb>,
      bind_polytriangles_of<Variant::mapped>,      bind_polytriangles_of<Variant::mapped_z>,
      bind_polytriangles_of<Variant::rgb_alpha_z>, bind_polytriangles_of<Variant::rgb_z>};
  by_variant[index_of(variant)](renderer);
}

}  // namespace zbuffer
