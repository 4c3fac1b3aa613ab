// Images: counted blocks of pixels with two tables of row pointers.
//
//   rows[height - 1] == scan_lines[0]      top row of the picture, lowest address
//   ...
//   rows[0] == scan_lines[height - 1]      bottom row of the picture, highest address
//
// Going up one picture row therefore subtracts `row_bytes` from the address.
#pragma once

#include "host/counted.h"

class KORVEL_EXPORT KT_Shared_Image_Data : public KT_Counted {
 public:
  std::uint8_t** scan_lines = nullptr;  ///< rows in memory order, entry 0 is the top row
  std::uint8_t** rows = nullptr;        ///< rows in device order, entry 0 is the bottom row
  std::int32_t width = 0;               ///< pixels a row
  std::int32_t height = 0;              ///< rows
  std::int32_t row_bytes = 0;           ///< distance between rows in bytes
  KT_Image_Format format = KT_Image_Format::none;
  /// Set on a read-back target that its owner keeps at the full size of the frame buffer.
  std::uint8_t keep_window_size = 0;

  /// Contiguous rows of `row_bytes` each, zeroed, or copied from `pixels` (top row first).
  /// Throws `std::bad_alloc`.
  KT_Shared_Image_Data(std::int32_t width, std::int32_t height, KT_Image_Format format,
                       std::int32_t row_bytes, const void* pixels);
  KT_Shared_Image_Data(const KT_Shared_Image_Data&);
  ~KT_Shared_Image_Data() override;
  KT_Shared_Image_Data* clone() const override;

  /// Row `y` of the picture counted from the bottom, as pixels of type `Pixel`.
  template <class Pixel>
  Pixel* row(std::int32_t y) const {
    return reinterpret_cast<Pixel*>(rows[y]);
  }
};

/// Handle on an image; null unless made with a size.
class KORVEL_EXPORT KT_Shared_Image : public KT_Handle<KT_Shared_Image_Data> {
 public:
  KT_Shared_Image() = default;
  /// Makes an image. `pixels` may be null: the pixels are allocated and zero; otherwise they are
  /// copied, top row first. The last argument is the framework's own and is passed false.
  KT_Shared_Image(std::int32_t width, std::int32_t height, KT_Image_Format format,
                  std::int32_t row_bytes, const void* pixels, bool);
};
