// Rectangles of whole frame images: clearing, reading back, writing depth, presenting.
//
// A read-back rectangle comes as two device points: `start` its top left pixel, `end` its bottom
// right one, both included. Source and target rows run from the top row down.
#pragma once

#include "module/core/fixed_point.h"
#include "module/core/software_z_buffer.h"

namespace zbuffer::primitives {

/// A rectangle of a read-back or a depth transfer in buffer coordinates.
struct Transfer_Area {
  std::int32_t x;       // left column
  std::int32_t top;     // highest row
  std::int32_t bottom;  // lowest row
  std::int32_t width;
  std::int32_t height;

  Transfer_Area(const Software_Z_Buffer& renderer, const KT_DCI_Point& start,
                const KT_DCI_Point& end)
      : x(wrapped_difference(start.x, renderer.device_origin.x)),
        top(wrapped_difference(start.y, renderer.device_origin.y)),
        bottom(wrapped_difference(end.y, renderer.device_origin.y)),
        width(wrapped_sum(wrapped_difference(end.x, start.x), 1)),
        height(wrapped_sum(wrapped_difference(start.y, end.y), 1)) {}

  bool empty() const { return width < 1 || height < 1; }
};

/// Clears the hard clip rectangle, cut to the image, with the window colour. A face pattern other
/// than solid makes the background the framework's work.
void clear_color_direct(KT_Renderer_Data* object, const KT_Rendition& rendition);
void clear_color_mapped(KT_Renderer_Data* object, const KT_Rendition& rendition);

/// Fills depth with the farthest value. The hard clip is trusted to lie in the image.
void clear_depth(KT_Renderer_Data* object, const KT_Rendition& rendition);

/// Read-backs. The image in the handle is reused when it fits; a format that is not the image's
/// own leaves a null handle. Only the direct form protects against rectangles outside the image.
void get_image_direct(KT_Renderer_Data* object, const KT_Rendition&, const KT_DCI_Point* start,
                      const KT_DCI_Point* end, const KT_Image_Format* format,
                      KT_Shared_Image* image);
void get_image_mapped(KT_Renderer_Data* object, const KT_Rendition&, const KT_DCI_Point* start,
                      const KT_DCI_Point* end, const KT_Image_Format* format,
                      KT_Shared_Image* image);
void get_depth(KT_Renderer_Data* object, const KT_Rendition&, const KT_DCI_Point* start,
               const KT_DCI_Point* end, const KT_Image_Format* format, KT_Shared_Image* image);

/// Writes depth rows, `stride` bytes apart, cut at the window's right edge alone.
void put_depth(KT_Renderer_Data* object, const KT_Rendition&, const KT_DCI_Point* start,
               const KT_DCI_Point* end, int stride, const std::uint16_t* pixels);

}  // namespace zbuffer::primitives
