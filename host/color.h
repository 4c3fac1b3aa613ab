// Colour maps: palettes and the colour cube by which shaded colours reach a palette index.
#pragma once

#include "host/counted.h"

/// A regular cube of colours inside a palette, twelve 32-bit words. A channel byte times its
/// scale is a cube coordinate with 8 fraction bits; a whole step in a channel moves the index by
/// the channel's stride.
struct KORVEL_EXPORT KT_Color_Cube {
  std::int32_t base_index = 0;
  std::int32_t framework_words[5] = {};
  std::int32_t red_stride = 0;
  std::int32_t green_stride = 0;
  std::int32_t blue_stride = 0;
  std::int32_t red_scale = 0;
  std::int32_t green_scale = 0;
  std::int32_t blue_scale = 0;

  /// A cube of `sizes` steps a channel, blue fastest; `gamma` and `base` are passed 1.0 and 0.
  KT_Color_Cube(KT_Int_RGB sizes, float gamma, int base);
};
static_assert(sizeof(KT_Color_Cube) == 48);

struct KT_Palette_Entry {
  KT_RGB32 color;
  std::uint32_t framework_word = 0;
};

class KORVEL_EXPORT KT_Palette_Data : public KT_Counted {
 public:
  KT_Palette_Entry* entries = nullptr;
  std::int32_t entry_count = 0;
  KT_Color_Cube* color_cube = nullptr;  ///< null when the palette has no cube; owned

  /// Copies `count` colours (1 to 256) and the cube, which may be null.
  KT_Palette_Data(const KT_RGB32* colors, std::int32_t count, const KT_Color_Cube* cube);
  KT_Palette_Data(const KT_Palette_Data&);
  ~KT_Palette_Data() override;
  KT_Palette_Data* clone() const override;

 private:
  friend class KT_Palette;
  struct Memo;
  Memo* memo_ = nullptr;  // colours looked up before, with their indices
};

class KORVEL_EXPORT KT_Palette : public KT_Handle<KT_Palette_Data> {
 public:
  KT_Palette() = default;
  KT_Palette(const KT_RGB32* colors, std::int32_t count, const KT_Color_Cube* cube);

  /// Index of the entry nearest to `color` in red, green and blue; the low byte is the index.
  /// The second argument is passed false. The palette must not be null.
  int closest_match(const KT_RGB32& color, bool) const;
};
