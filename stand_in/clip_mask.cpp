// Rasterizing of contours into clip masks.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "host/contour.h"

namespace {

/// A mask's bits while edges are entered. Each edge flips, on each row it crosses, the bit of the
/// first pixel to its right; what lies after an odd number of flips is inside.
class Edge_Flags {
 public:
  Edge_Flags(KT_Shared_Image_Data& image, KT_Int_XY origin) : image_(image), origin_(origin) {}

  void enter(const KT_Point& from, const KT_Point& to) {
    // Taken from below always, so that contours that share an edge cross rows at the same places.
    const bool rises = from.y <= to.y;
    const KT_Point& low = rises ? from : to;
    const KT_Point& high = rises ? to : from;
    const double low_x = static_cast<double>(low.x) - origin_.x;
    const double low_y = static_cast<double>(low.y) - origin_.y;
    const double high_x = static_cast<double>(high.x) - origin_.x;
    const double high_y = static_cast<double>(high.y) - origin_.y;
    const int first = row_from(low_y);
    const int end = row_from(high_y);
    for (int row = first; row < end; ++row) {
      flip(row, low_x + (row - low_y) * (high_x - low_x) / (high_y - low_y));
    }
  }

 private:
  /// The first row at or above `y`, among those of the mask. A pixel's centre is its coordinate.
  int row_from(double y) const {
    return static_cast<int>(std::ceil(std::clamp(y, 0.0, static_cast<double>(image_.height))));
  }

  void flip(int row, double x) {
    if (!(x <= image_.width - 1)) return;
    const int column = static_cast<int>(std::ceil(std::max(x, 0.0)));
    image_.rows[row][column / 8] ^= static_cast<std::uint8_t>(128 >> column % 8);
  }

  KT_Shared_Image_Data& image_;
  KT_Int_XY origin_;
};

/// Turns the flags of a row into hidden pixels: all are hidden up to the first flag.
void hide_outside(std::uint8_t* row, int row_bytes) {
  unsigned hidden = 0xFF;
  for (int n = 0; n < row_bytes; ++n) {
    unsigned bits = row[n];
    bits ^= bits >> 1;
    bits ^= bits >> 2;
    bits ^= bits >> 4;
    bits ^= hidden;
    row[n] = static_cast<std::uint8_t>(bits);
    hidden = (bits & 1) != 0 ? 0xFF : 0;
  }
}

bool is_drawable(const std::vector<KT_Point>& contour) {
  return std::all_of(contour.begin(), contour.end(), [](const KT_Point& point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
  });
}

}  // namespace

int Frame_Buffer_Mask::establish_configuration(int width, int height, int x, int y) {
  origin_ = {x, y};
  if (image && image->width == width && image->height == height) return 1;
  const std::int64_t row_bytes = (static_cast<std::int64_t>(width) + 63) / 64 * 8;
  image = KT_Shared_Image(width, height, KT_Image_Format::none,
                          static_cast<std::int32_t>(row_bytes), nullptr, false);
  return 1;
}

void Frame_Buffer_Mask::clear_and_rasterize_mask(const KT_Contour_Set& contours) {
  source_contour = contours;
  contour_id = contours ? contours->id : 0;
  KT_Shared_Image_Data& bits = image.writable();
  const auto row_bytes = static_cast<std::size_t>(bits.row_bytes);
  for (int row = 0; row < bits.height; ++row) std::memset(bits.rows[row], 0, row_bytes);

  if (contours) {
    Edge_Flags flags(bits, origin_);
    for (const auto& contour : contours->contours) {
      if (!is_drawable(contour)) continue;
      for (std::size_t n = 0; n < contour.size(); ++n) {
        flags.enter(contour[n], contour[n + 1 < contour.size() ? n + 1 : 0]);
      }
    }
  }
  for (int row = 0; row < bits.height; ++row) hide_outside(bits.rows[row], bits.row_bytes);
}
