// Images, twelve routines in one loop over rows: {index, colour, colour with alpha} by {no depth,
// depth} by {no mask, mask}.
//
//   start (left, top) ->  * * * * * .    source rows from top to bottom
//                         * * * * * .    . is cut off: the window ends; nothing else is clipped
//                         * * * * * .  <- end (right, bottom)
//
// A mask cuts a row into visible stretches; a stretch is a block copy or a loop over quads. The
// depth ramp steps between the pixels of a row, hidden ones included, and runs on from row to
// row: a row begins with the depth at which the one above it ended.

#include "module/primitives/images.h"

#include <algorithm>
#include <array>
#include <utility>

#include "module/core/fixed_point.h"
#include "module/core/frame.h"
#include "module/pixels/mask.h"
#include "module/pixels/pixel_bits.h"
#include "module/pixels/quad.h"

namespace zbuffer {
namespace {

/// A call of either action.
template <class Pixel>
struct Image_Call {
  Software_Z_Buffer& renderer;
  const KT_Rendition& rendition;
  const KT_DCI_Point& start;
  const KT_DCI_Point& end;
  std::int32_t stride;
  const std::uint8_t* pixels;

  bool advanced_bit(std::uint32_t bit) const {
    return (rendition->misc_attributes->advanced_options.bits & bit) != 0;
  }
  /// Pixels of a row, cut where the window ends on the right; may be below 1.
  std::int32_t columns() const {
    const std::int32_t last = renderer.device_origin.x + renderer.window_extent.x - 1;
    return wrapped_sum(wrapped_difference(std::min(end.x, last), start.x), 1);
  }
};

// What a source pixel does. `drawn` says for which pixels depth takes part.

struct Copy_Source {
  static constexpr bool copies = true;
  static Quad mixed(Quad, Quad source) { return source; }
  static Quad drawn(Quad) { return ~Quad{}; }
};

struct Source_Alpha {
  static constexpr bool copies = false;
  static Quad mixed(Quad old, Quad source) { return blended_by_source(old, source); }
  static Quad drawn(Quad source) { return ~is_transparent(source); }
};

Quad depths_of(const Quad_Steps& ramp) {
  return (ramp.at() >> Depth::fraction_bits) & 0xFFFFu;
}

/// Pixels without depth.
struct No_Depth {
  static constexpr bool ramps = false;

  template <class Source, class Pixel>
  void draw(std::int32_t, Pixel* to, std::uint16_t*, const Pixel* from,
            std::ptrdiff_t count) const {
    if constexpr (Source::copies) {
      std::memcpy(to, from, static_cast<std::size_t>(count) * sizeof(Pixel));
    } else {
      for (; count >= quad_size; count -= quad_size, to += quad_size, from += quad_size) {
        quad<Source>(Whole_Quad{}, to, from);
      }
      if (count > 0) quad<Source>(Part_Of_Quad{static_cast<int>(count)}, to, from);
    }
  }
  void next_row(std::int32_t) {}

 private:
  template <class Source, class Pixel>
  static void quad(auto access, Pixel* to, const Pixel* from) {
    access.store(to, Source::mixed(access.load(to), access.load(from)));
  }
};

/// The linear ramp; passes when less than or equal to what is stored, and then is stored.
struct Depth_Ramp {
  static constexpr bool ramps = true;

  Word at;  // at the first pixel of the row
  Word step;

  Depth_Ramp(const KT_DCI_Point& start, const KT_DCI_Point& end)
      : at(Depth::at(start.z)),
        step(depth_step(wrapped_difference(end.z, start.z), wrapped_difference(end.x, start.x))) {}

  /// Draws from pixel `first` of the row on.
  template <class Source, class Pixel>
  void draw(std::int32_t first, Pixel* to, std::uint16_t* depths, const Pixel* from,
            std::ptrdiff_t count) const {
    Quad_Steps ramp(at + as_word(first) * step, step);
    for (; count >= quad_size; count -= quad_size) {
      quad<Source>(Whole_Quad{}, to, depths, from, depths_of(ramp));
      ramp.advance();
      to += quad_size;
      depths += quad_size;
      from += quad_size;
    }
    if (count > 0) {
      quad<Source>(Part_Of_Quad{static_cast<int>(count)}, to, depths, from, depths_of(ramp));
    }
  }

  // There is no step after a row's last pixel.
  void next_row(std::int32_t count) { at += as_word(count - 1) * step; }

 private:
  template <class Source, class Pixel>
  static void quad(auto access, Pixel* to, std::uint16_t* depths, const Pixel* from, Quad depth) {
    const Quad source = access.load(from);
    const Quad stored = access.load(depths);
    const Quad old = access.load(to);
    const Quad pass = at_most(depth, stored) & Source::drawn(source);
    access.store(depths, select(pass, depth, stored));
    access.store(to, select(pass, Source::mixed(old, source), old));
  }
};

/// Calls `draw(first, count)` for the whole row.
struct No_Mask {
  template <class Draw>
  void stretches(std::int32_t, std::int32_t, std::int32_t count, Draw draw) const {
    draw(0, count);
  }
};

/// Calls `draw(first, count)` for each visible stretch of a row.
struct Row_Mask {
  Masked_Cover<Solid_Cover> cover;

  template <class Draw>
  void stretches(std::int32_t x, std::int32_t y, std::int32_t count, Draw draw) const {
    auto bits = cover.begin(x, y);
    for (std::int32_t chunk = 0; chunk < count; chunk += chunk_size) {
      std::uint64_t visible = bits.next(std::min(count - chunk, chunk_size)).ordinary;
      for (std::int32_t first = chunk; visible != 0;) {
        const int hidden = std::countr_zero(visible);
        visible >>= hidden;
        const int length = std::countr_one(visible);
        draw(first + hidden, length);
        first += hidden + length;
        visible = length < chunk_size ? visible >> length : 0;
      }
    }
  }
};

template <class Source, class Pixel, class Ramp, class Mask>
void draw_rows(const Image_Call<Pixel>& call, Ramp ramp, const Mask& mask) {
  const Frame frame(call.renderer);
  const std::int32_t count = call.columns();
  const std::int32_t x = wrapped_difference(call.start.x, frame.origin.x);
  const std::int32_t bottom = wrapped_difference(call.end.y, frame.origin.y);
  const std::uint8_t* source = call.pixels;
  for (std::int32_t y = wrapped_difference(call.start.y, frame.origin.y); y >= bottom; --y) {
    Pixel* const to = frame.color<Pixel>(y, x);
    std::uint16_t* depths = nullptr;
    if constexpr (Ramp::ramps) depths = frame.depth(y, x);
    const auto* from = reinterpret_cast<const Pixel*>(source);
    mask.stretches(x, y, count, [&](std::int32_t first, std::int32_t length) {
      ramp.template draw<Source>(first, to + first, Ramp::ramps ? depths + first : nullptr,
                                 from + first, length);
    });
    ramp.next_row(count);
    source += call.stride;
  }
}

enum class Depth_Use : std::uint8_t { none, ramp };

template <class Source, Depth_Use depth, class Pixel, class Mask>
void draw_image(const Image_Call<Pixel>& call, const Mask& mask) {
  if (call.columns() < 1) return;
  if constexpr (depth == Depth_Use::ramp) {
    draw_rows<Source>(call, Depth_Ramp(call.start, call.end), mask);
  } else {
    draw_rows<Source>(call, No_Depth{}, mask);
  }
}

/// The tests at the head, in the order of their list; the first that holds takes the whole call.
enum class Head_Test : std::uint8_t {
  none,
  alpha_bit,  ///< blending asked for: the blending variant
  no_depth,   ///< depth is not enabled: the variant without depth
  mask,       ///< a mask in force: the same drawing through it
  opaque_bit  ///< alpha is to be ignored: as an opaque image
};

using Head = std::array<Head_Test, 3>;

constexpr Head head_of(Variant variant) {
  using enum Head_Test;
  switch (variant) {
    case Variant::mapped:
      return {mask};
    case Variant::mapped_z:
      return {no_depth, mask};
    case Variant::rgb:
      return {alpha_bit, mask};
    case Variant::rgb_z:
      return {alpha_bit, no_depth, mask};
    // Behind the mask: a masked image is blended, whatever the opaque bit says...
    case Variant::rgb_alpha:
      return {mask, opaque_bit};
    // ...and here it is tested against depth, too, where depth is not enabled.
    case Variant::rgb_alpha_z:
      return {mask, no_depth, opaque_bit};
  }
  return {};
}

template <Variant variant>
using Source_Of = std::conditional_t<is_alpha(variant), Source_Alpha, Copy_Source>;
template <Variant variant>
constexpr Depth_Use depth_use = has_depth(variant) ? Depth_Use::ramp : Depth_Use::none;

template <Variant variant, class Pixel>
void enter_image(const Image_Call<Pixel>& call);

template <Head_Test test, Variant variant, class Pixel>
bool taken(const Image_Call<Pixel>& call) {
  if constexpr (test == Head_Test::alpha_bit) {
    if (!call.advanced_bit(KT_Advanced_Options::alpha_bit)) return false;
    enter_image<with_alpha(variant)>(call);
  } else if constexpr (test == Head_Test::no_depth) {
    if (call.rendition->display_context->depth_enabled != 0) return false;
    enter_image<without_depth(variant)>(call);
  } else if constexpr (test == Head_Test::mask) {
    if (!mask_in_force(call.renderer, call.rendition)) return false;
    draw_image<Source_Of<variant>, depth_use<variant>>(
        call, Row_Mask{Masked_Cover(call.renderer.mask_cache, Solid_Cover{})});
  } else if constexpr (test == Head_Test::opaque_bit) {
    if (!call.advanced_bit(KT_Advanced_Options::opaque_image_bit)) return false;
    draw_image<Copy_Source, depth_use<variant>>(call, No_Mask{});
  } else {
    return false;
  }
  return true;
}

template <Variant variant, class Pixel, std::size_t... at>
bool taken_by_head(const Image_Call<Pixel>& call, std::index_sequence<at...>) {
  constexpr Head head = head_of(variant);
  return (taken<head[at], variant>(call) || ...);
}

template <Variant variant, class Pixel>
void enter_image(const Image_Call<Pixel>& call) {
  if (taken_by_head<variant>(call, std::make_index_sequence<3>{})) return;
  draw_image<Source_Of<variant>, depth_use<variant>>(call, No_Mask{});
}

}  // namespace

template <Variant variant>
void draw_rgb32_image(KT_Renderer_Data* object, const KT_Rendition& rendition,
                      const KT_DCI_Point* start, const KT_DCI_Point* end, int stride,
                      const KT_RGB32* pixels, int, const KT_Packing*) {
  enter_image<variant>(Image_Call<std::uint32_t>{renderer_of(object), rendition, *start, *end,
                                                 stride,
                                                 reinterpret_cast<const std::uint8_t*>(pixels)});
}

template <Variant variant>
void draw_index8_image(KT_Renderer_Data* object, const KT_Rendition& rendition,
                       const KT_DCI_Point* start, const KT_DCI_Point* end, int stride,
                       const std::uint8_t* pixels) {
  enter_image<variant>(
      Image_Call<std::uint8_t>{renderer_of(object), rendition, *start, *end, stride, pixels});
}

#define ZBUFFER_RGB32_IMAGE(variant)                                                     \
  template void draw_rgb32_image<variant>(KT_Renderer_Data*, const KT_Rendition&,        \
                                          const KT_DCI_Point*, const KT_DCI_Point*, int, \
                                          const KT_RGB32*, int, const KT_Packing*);
#define ZBUFFER_INDEX8_IMAGE(variant)                                                     \
  template void draw_index8_image<variant>(KT_Renderer_Data*, const KT_Rendition&,        \
                                           const KT_DCI_Point*, const KT_DCI_Point*, int, \
                                           const std::uint8_t*);
ZBUFFER_RGB32_IMAGE(Variant::rgb_alpha)
ZBUFFER_RGB32_IMAGE(Variant::rgb)
ZBUFFER_RGB32_IMAGE(Variant::rgb_alpha_z)
ZBUFFER_RGB32_IMAGE(Variant::rgb_z)
ZBUFFER_INDEX8_IMAGE(Variant::mapped)
ZBUFFER_INDEX8_IMAGE(Variant::mapped_z)
#undef ZBUFFER_RGB32_IMAGE
#undef ZBUFFER_INDEX8_IMAGE

}  // namespace zbuffer
