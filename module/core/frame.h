// What a drawing call reads of the frame images: row tables and the origin, looked up once a call.
#pragma once

#include "module/core/software_z_buffer.h"

namespace zbuffer {

struct Frame {
  std::uint8_t* const* color_rows;
  std::uint8_t* const* depth_rows;  // null in a renderer without depth
  KT_Int_XY origin;

  explicit Frame(const Software_Z_Buffer& renderer)
      : color_rows(renderer.color_image->rows),
        depth_rows(renderer.depth_image ? renderer.depth_image->rows : nullptr),
        origin(renderer.device_origin) {}

  template <class Pixel>
  Pixel* color(std::int32_t y, std::int32_t x) const {
    return reinterpret_cast<Pixel*>(color_rows[y]) + x;
  }
  std::uint16_t* depth(std::int32_t y, std::int32_t x) const {
    return reinterpret_cast<std::uint16_t*>(depth_rows[y]) + x;
  }
};

}  // namespace zbuffer
