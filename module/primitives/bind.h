// Binds the routines of dots, polymarkers, images, polygons and frame services to their actions.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer::primitives {

void bind_polygons(Software_Z_Buffer& renderer);
void bind_dots(Software_Z_Buffer& renderer, Variant variant);
void bind_polymarkers(Software_Z_Buffer& renderer, Variant variant);
void bind_rgb32_images(Software_Z_Buffer& renderer, Variant variant);
void bind_index8_images(Software_Z_Buffer& renderer, Variant variant);
void bind_depth_clear(Software_Z_Buffer& renderer, Variant variant);
void bind_depth_transfer(Software_Z_Buffer& renderer, Variant variant);
void bind_color_services(Software_Z_Buffer& renderer, Variant variant);

}  // namespace zbuffer::primitives
