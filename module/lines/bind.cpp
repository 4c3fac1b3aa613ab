#include "module/lines/bind.h"

namespace zbuffer {

void bind_polylines(Software_Z_Buffer& renderer, Variant variant) {
  using lines::bind_polylines_of;
  constexpr void (*by_variant[variant_count])(Software_Z_Buffer&) = {
      bind_polylines_of<Variant::rgb_alpha>,   bind_polylines_of<Variant::rgb>,
      bind_polylines_of<Variant::mapped>,      bind_polylines_of<Variant::mapped_z>,
      bind_polylines_of<Variant::rgb_alpha_z>, bind_polylines_of<Variant::rgb_z>};
  by_variant[index_of(variant)](renderer);
}

}  // namespace zbuffer
