// Read-backs of colour and depth, and depth written from outside, by rows from the top down.
#include <algorithm>
#include <cstring>
#include <limits>

#include "module/primitives/frame_services.h"

namespace zbuffer::primitives {
namespace {

constexpr std::int32_t direct_pixel_bytes = 4;
constexpr std::int32_t depth_pixel_bytes = 2;

void copy_bytes(void* to, const void* from, std::int64_t count) {
  std::memcpy(to, from, static_cast<std::size_t>(count));
}

bool accepted(KT_Image_Format asked, KT_Image_Format own) {
  return asked == own || asked == KT_Image_Format::renderer_own;
}

bool fits(const KT_Shared_Image& image, std::int32_t width, std::int32_t height,
          KT_Image_Format format) {
  return image && image->width == width && image->height == height && image->format == format;
}

// Keeps the image in the handle when it fits, or makes one with rows of `row_bytes`.
void prepare_target(KT_Shared_Image& image, std::int32_t width, std::int32_t height,
                    KT_Image_Format format, std::int32_t row_bytes) {
  if (fits(image, width, height, format)) return;
  image.release();
  image = KT_Shared_Image(width, height, format, row_bytes, nullptr, false);
}

// Whether a row of `width` pixels has a length.
bool is_row(std::int32_t width, std::int32_t pixel_bytes) {
  return width <= std::numeric_limits<std::int32_t>::max() / pixel_bytes;
}

// Reads a rectangle that the caller has kept inside the frame.
void get_trusted(const KT_Shared_Image& frame, const Transfer_Area& area, KT_Image_Format own,
                 std::int32_t pixel_bytes, KT_Shared_Image& image) {
  if (area.empty()) return;
  if (!is_row(area.width, pixel_bytes)) return image.release();
  const std::int32_t bytes = area.width * pixel_bytes;
  prepare_target(image, area.width, area.height, own, bytes);
  std::uint8_t* to = image->scan_lines[0];
  for (std::int32_t y = area.top; y >= area.bottom; --y, to += bytes) {
    copy_bytes(to, frame->rows[y] + area.x * pixel_bytes, bytes);
  }
}

// A target kept at the size of the frame gets the rectangle at its own place. The byte count
// reaches from the rectangle's left to the frame's right edge or further, by the greater of the
// two right ends, and the row indices count in memory order in both images; what would then run
// over the end of an image is cut.
void get_into_kept(const KT_Shared_Image& frame, const Transfer_Area& area, KT_Shared_Image& image,
                   std::int32_t start_x, std::int32_t end_x) {
  if (!fits(image, frame->width, frame->height, KT_Image_Format::rgb32)) {
    image.release();
    image = KT_Shared_Image(frame->width, frame->height, KT_Image_Format::rgb32, frame->row_bytes,
                            nullptr, false);
    image->keep_window_size = 1;
  }
  std::int32_t x = area.x;
  const std::int64_t end_of_row = std::max(end_x, frame->width - 1);
  std::int64_t bytes = (end_of_row - start_x + 1) * direct_pixel_bytes;
  if (x < 0) {
    bytes += std::int64_t{x} * direct_pixel_bytes;
    x = 0;
  }
  const std::int32_t top = std::min(area.top, frame->height - 1);
  const std::int32_t bottom = std::max(area.bottom, 0);
  for (std::int32_t index = top; index >= bottom; --index) {
    const std::int64_t room =
        std::min<std::int64_t>(std::int64_t{frame->height - index} * frame->row_bytes,
                               std::int64_t{image->height - index} * image->row_bytes) -
        std::int64_t{x} * direct_pixel_bytes;
    const std::int64_t count = std::min(bytes, room);
    if (count < 1) continue;
    const std::int64_t offset = std::int64_t{x} * direct_pixel_bytes;
    copy_bytes(image->scan_lines[index] + offset, frame->scan_lines[index] + offset, count);
  }
}

// The first row is held against the height of the request, not of the frame. A cut on the left
// shortens the rows and does not move them.
void get_clipped(const KT_Shared_Image& frame, const Transfer_Area& area, KT_Shared_Image& image) {
  if (!is_row(area.width, direct_pixel_bytes)) return image.release();
  const std::int32_t row_bytes = area.width * direct_pixel_bytes;
  prepare_target(image, area.width, area.height, KT_Image_Format::rgb32, row_bytes);
  std::int32_t x = area.x;
  std::int64_t bytes = row_bytes;
  const std::int64_t beyond = std::int64_t{x} + area.width - frame->width;
  if (beyond > 0) bytes -= beyond * direct_pixel_bytes;
  if (x < 0) {
    bytes += std::int64_t{x} * direct_pixel_bytes;
    x = 0;
  }
  if (bytes < 1) return;
  const std::int32_t top = std::min(area.top, area.height - 1);
  const std::int32_t bottom = std::max(area.bottom, 0);
  std::uint8_t* to = image->scan_lines[0];
  for (std::int32_t y = top; y >= bottom; --y, to += row_bytes) {
    if (y >= frame->height) continue;
    copy_bytes(to, frame->rows[y] + x * direct_pixel_bytes, bytes);
  }
}

}  // namespace

void get_image_direct(KT_Renderer_Data* object, const KT_Rendition&, const KT_DCI_Point* start,
                      const KT_DCI_Point* end, const KT_Image_Format* format,
                      KT_Shared_Image* image) {
  const Software_Z_Buffer& renderer = renderer_of(object);
  if (lacks_image(renderer, Variant::rgb) || !accepted(*format, KT_Image_Format::rgb32)) {
    return image->release();
  }
  const Transfer_Area area(renderer, *start, *end);
  if (area.empty()) return;
  if (*image && (*image)->keep_window_size) {
    get_into_kept(renderer.color_image, area, *image, start->x, end->x);
  } else {
    get_clipped(renderer.color_image, area, *image);
  }
}

void get_image_mapped(KT_Renderer_Data* object, const KT_Rendition&, const KT_DCI_Point* start,
                      const KT_DCI_Point* end, const KT_Image_Format* format,
                      KT_Shared_Image* image) {
  const Software_Z_Buffer& renderer = renderer_of(object);
  if (lacks_image(renderer, Variant::mapped) || !accepted(*format, KT_Image_Format::mapped)) {
    return image->release();
  }
  get_trusted(renderer.color_image, Transfer_Area(renderer, *start, *end), KT_Image_Format::mapped,
              1, *image);
}

void get_depth(KT_Renderer_Data* object, const KT_Rendition&, const KT_DCI_Point* start,
               const KT_DCI_Point* end, const KT_Image_Format* format, KT_Shared_Image* image) {
  const Software_Z_Buffer& renderer = renderer_of(object);
  if (lacks_depth_image(renderer) || !accepted(*format, KT_Image_Format::depth)) {
    return image->release();
  }
  get_trusted(renderer.depth_image, Transfer_Area(renderer, *start, *end), KT_Image_Format::depth,
              depth_pixel_bytes, *image);
}

void put_depth(KT_Renderer_Data* object, const KT_Rendition&, const KT_DCI_Point* start,
               const KT_DCI_Point* end, int stride, const std::uint16_t* pixels) {
  const Software_Z_Buffer& renderer = renderer_of(object);
  if (lacks_depth_image(renderer)) return;
  const Transfer_Area area(renderer, *start, *end);
  const std::int64_t right = std::min<std::int64_t>(
      end->x, std::int64_t{renderer.device_origin.x} + renderer.window_extent.x - 1);
  const std::int64_t bytes = (right - start->x + 1) * depth_pixel_bytes;
  if (bytes < 1) return;
  const auto* from = reinterpret_cast<const std::uint8_t*>(pixels);
  for (std::int32_t y = area.top; y >= area.bottom; --y, from += stride) {
    copy_bytes(renderer.depth_image->row<std::uint16_t>(y) + area.x, from, bytes);
  }
}

}  // namespace zbuffer::primitives
