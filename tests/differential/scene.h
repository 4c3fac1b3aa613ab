// The random settings of a call: window, images, rendition. All of them follow from one seed.
#pragma once

#include <string>

#include "tests/differential/model_raster.h"
#include "tests/differential/random.h"

namespace fuzz {

struct Scene {
  std::uint64_t seed = 0;
  model::Variant variant{};
  KT_Int_XY window_origin, size;
  bool local = false, use_mask = false, force_merge = false;
  int color_padding = 0, depth_padding = 0;  ///< bytes after the pixels of a row
  int merge_key[3] = {255, 255, 255};
  unsigned zbuffer_test = 2;
  std::uint8_t zbuffer_write = 1;
  KT_Palette palette;
  KT_User_Pattern pattern;
  std::vector<std::uint8_t> pattern_bytes;
  KT_Rendition rendition;
  std::vector<KT_RGB32> colors;  ///< for the points of the call, more or less alike
  std::vector<int> depths;       ///< of the call; the images hold some like them

  Scene(std::uint64_t seed, Random&);
  Scene(const Scene&) = delete;

  KT_Int_XY origin() const { return local ? KT_Int_XY{} : window_origin; }
  bool is_solid() const;
  KT_RGB32 key() const;  ///< of merge control
  const KT_Int_Rectangle& hard_clip() const { return rendition->display_context->hard_clip; }
  /// Overwrites an image with what the call shall meet, padding included.
  void fill(const KT_Shared_Image& image) const;
  std::string variant_name() const;
  std::string story() const;

 private:
  void make_window(Random&);
  void make_attributes(Random&);
  void make_mask(Random&, const KT_Int_Rectangle& window);
};

KT_Int_Rectangle grown(const KT_Int_Rectangle& r, int by);
KT_DCI_Point point_in(Random&, const KT_Int_Rectangle& r);
/// Points of a strip: a mixture of free points, slivers, rows and repeated points. `far`: also
/// beyond what edges of strips are drawn for.
model::Strip_Points random_strip(Random&, model::Layer, int count, const KT_Int_Rectangle& hard,
                                 bool far);

}  // namespace fuzz
