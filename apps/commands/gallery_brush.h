// What a primitive of the gallery is drawn with.
#pragma once

#include <cstdint>
#include <vector>

#include "host/application.h"

namespace kv {

inline constexpr int cell_side = 96;  // of the picture that a primitive is drawn in, pixels

// Coordinates of its own go from 0 to 1 over the place that it is given, with u to the right and v
// up. Depth rises with u.
class Brush {
 public:
  struct Place {
    float left = 0, bottom = 0, side = cell_side;  // device coordinates
  };
  struct Paint {
    int hue = 0;  // colours of one hue are alike
    std::uint8_t alpha = 255;
  };

  Brush(KT_Renderer_Data& renderer, const KT_Rendition& rendition, const Place& place,
        const Paint& paint);

  KT_Point at(float u, float v) const;
  KT_DCI_Point pixel_at(float u, float v) const;
  bool in_window(const KT_DCI_Point& point) const;

  // Colours that differ by their number.
  KT_RGB32 color(int number) const;
  std::vector<KT_RGB32> colors(std::size_t count) const;
  void set_color(const KT_RGB32& color);
  void add_option(std::uint32_t advanced_bit);

  template <KT_Action action, class... Arguments>
  void call(Arguments... arguments) {
    renderer_.actions.call<action>(rendition, arguments...);
  }
  // The same for a list of points.
  template <KT_Action action, class Points, class... Arguments>
  void call_list(const Points& points, Arguments... arguments) {
    call<action>(static_cast<int>(points.size()), points.data(), arguments...);
  }

  KT_Rendition rendition;

 private:
  KT_Renderer_Data& renderer_;
  Place place_;
  Paint paint_;
};

}  // namespace kv
