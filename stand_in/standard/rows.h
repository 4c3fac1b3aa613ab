// Rows of colours on their way to the renderer's own image action: palette indices where colours
// are mapped, and one call for each stretch of pixels without holes.
#pragma once

#include <span>
#include <vector>

#include "host/renderer.h"

namespace stand_in {

/// The palette index of a colour at a place, by the dither that the renderer's own routines use.
class Indexer {
 public:
  Indexer(const KT_Palette& palette, KT_Int_XY origin) : palette_(palette), origin_(origin) {}

  std::uint8_t index(KT_RGB32 color, int x, int y) const;

 private:
  KT_Palette palette_;
  KT_Int_XY origin_;
};

/// A row from pixel (`x`, `y`) to the right. Depth goes up by `z_step` a pixel.
struct Color_Row {
  int x;
  int y;
  double z;
  double z_step;
  std::span<const KT_RGB32> colors;
  const std::uint8_t* visible = nullptr;  ///< null: all; else 0 for a hole
};

class Row_Painter {
 public:
  Row_Painter(const KT_Renderer_Data& renderer, const KT_Rendition& rendition);

  void draw(const Color_Row& row);
  /// Device coordinates of the buffer's bottom left pixel.
  KT_Int_XY origin() const { return origin_; }

 private:
  bool is_hole(const Color_Row& row, std::size_t at) const;
  void draw_stretch(const Color_Row& row, std::size_t first, std::size_t end);

  const KT_Renderer_Data& renderer_;
  const KT_Rendition& rendition_;
  bool is_mapped_;
  bool cuts_out_;  // transparent pixels are holes, as an index has no alpha
  KT_Int_XY origin_;
  Indexer indexer_;
  std::vector<std::uint8_t> indices_;
};

}  // namespace stand_in
