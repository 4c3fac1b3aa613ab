// Images for the gallery.

#include <algorithm>
#include <cmath>
#include <vector>

#include "apps/commands/gallery_families.h"

namespace kv {
namespace {

struct Image_Box {
  KT_DCI_Point start, end;  // top left, bottom right
  int skipped_columns, skipped_rows;
};

constexpr int image_side = 80;

// The part of the image in the cell that a caller must cut out itself: all but the right edge.
Image_Box box_of(const Brush& brush) {
  const KT_DCI_Point near = brush.pixel_at(0.08f, 0.08f), far = brush.pixel_at(0.92f, 0.08f);
  Image_Box box{
      {near.x, near.y + image_side - 1, near.z}, {near.x + image_side - 1, near.y, far.z}, 0, 0};
  box.skipped_columns = std::max(0, -box.start.x);
  box.skipped_rows = std::max(0, box.start.y - (cell_side - 1));
  box.start.x += box.skipped_columns;
  box.start.y -= box.skipped_rows;
  box.end.y = std::max(box.end.y, 0);
  return box;
}

// A disc whose alpha falls off, on a colour wedge.
void rgb32_image(Brush& brush) {
  std::vector<KT_RGB32> pixels;
  for (int y = 0; y < image_side; ++y)
    for (int x = 0; x < image_side; ++x) {
      const auto ramp = [](int i) { return static_cast<std::uint8_t>(i * 255 / (image_side - 1)); };
      const int middle = image_side / 2;
      const double distance = std::hypot(x - middle, y - middle) / middle;
      const auto alpha =
          static_cast<std::uint8_t>(255 * std::clamp(1.6 - 1.6 * distance, 0.0, 1.0));
      pixels.push_back({ramp(y), static_cast<std::uint8_t>(255 - ramp(x)), ramp(x), alpha});
    }
  const Image_Box box = box_of(brush);
  const KT_RGB32* first =
      &pixels[static_cast<std::size_t>(box.skipped_rows * image_side + box.skipped_columns)];
  brush.call<KT_Action::Draw_DCI_RGB32_Image>(&box.start, &box.end, 4 * image_side, first, 0,
                                              static_cast<const KT_Packing*>(nullptr));
}

void opaque_image(Brush& brush) {
  brush.add_option(KT_Advanced_Options::opaque_image_bit);
  rgb32_image(brush);
}

void index8_image(Brush& brush) {
  std::vector<std::uint8_t> pixels;
  for (int y = 0; y < image_side; ++y)
    for (int x = 0; x < image_side; ++x)
      pixels.push_back(static_cast<std::uint8_t>(x * 16 / image_side + 16 * (y * 16 / image_side)));
  const Image_Box box = box_of(brush);
  const std::uint8_t* first =
      &pixels[static_cast<std::size_t>(box.skipped_rows * image_side + box.skipped_columns)];
  brush.call<KT_Action::Draw_DCI_Index8_Image>(&box.start, &box.end, image_side, first);
}

constexpr Primitive image_list[] = {
    {"RGB32", rgb32_image}, {"RGB32, its alpha ignored", opaque_image}, {"Index8", index8_image}};

}  // namespace

std::span<const Primitive> image_primitives() {
  return image_list;
}

}  // namespace kv
