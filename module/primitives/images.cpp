// Images by source (index, colour, colour with alpha), depth and mask, in one loop over rows.
//
//   start (top left)  ->  * * * * * .    source rows from top to bottom
//                         * * * * * .    . is cut off: the window ends; nothing else is clipped
//                         * * * * * .  <- end (bottom right)
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

namespace zbuffer::primitives {
namespace {

/// Pixels of a row, cut where the window ends on the right; may be below 1.
std::int32_t columns(const Image_Call& call) {
  const Software_Z_Buffer& renderer = call.renderer;
  const std::int64_t last = std::int64_t{renderer.device_origin.x} + renderer.window_extent.x - 1;
  const auto end = static_cast<std::int32_t>(std::min<std::int64_t>(call.end.x, last));
  return wrapped_sum(wrapped_difference(end, call.start.x), 1);
}

// How a source pixel is drawn. `drawn` selects the pixels that are tested against depth.

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
  Masked_Bits<Solid_Bits> bits;

  template <class Draw>
  void stretches(std::int32_t x, std::int32_t y, std::int32_t count, Draw draw) const {
    auto cursor = bits.begin(x, y);
    for (std::int32_t done = 0; done < count; done += bits_at_once) {
      std::uint64_t visible = cursor.next(std::min(count - done, bits_at_once)).ordinary;
      for (std::int32_t first = done; visible != 0;) {
        const int hidden = std::countr_zero(visible);
        visible >>= hidden;
        const int length = std::countr_one(visible);
        draw(first + hidden, length);
        first += hidden + length;
        visible = length < bits_at_once ? visible >> length : 0;
      }
    }
  }
};

template <class Source, class Pixel, class Ramp, class Mask>
void draw_rows(const Image_Call& call, Ramp ramp, const Mask& mask) {
  const Frame frame(call.renderer);
  const std::int32_t count = columns(call);
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

template <class Pixel, class Source>
void draw_image(Variant variant, Masking masking, const Image_Call& call) {
  if (columns(call) < 1) return;
  const auto draw_along = [&](const auto& ramp) {
    if (masking == Masking::masked) {
      const Row_Mask mask{Masked_Bits(call.renderer.mask_cache, Solid_Bits{})};
      draw_rows<Source, Pixel>(call, ramp, mask);
    } else {
      draw_rows<Source, Pixel>(call, ramp, No_Mask{});
    }
  };
  if (has_depth(variant)) {
    draw_along(Depth_Ramp(call.start, call.end));
  } else {
    draw_along(No_Depth{});
  }
}

/// Whether the alpha bytes of an image are used.
enum class Image_Alpha : std::uint8_t { ignored, by_pixel };

void draw(Variant variant, Masking masking, Image_Alpha alpha, const Image_Call& call) {
  if (is_mapped(variant)) return draw_image<std::uint8_t, Copy_Source>(variant, masking, call);
  if (alpha == Image_Alpha::ignored) {
    return draw_image<std::uint32_t, Copy_Source>(variant, masking, call);
  }
  draw_image<std::uint32_t, Source_Alpha>(variant, masking, call);
}

constexpr Image_Alpha alpha_of(Variant variant) {
  return is_alpha(variant) ? Image_Alpha::by_pixel : Image_Alpha::ignored;
}

// In the blending variants the mask comes first: a masked image is blended, whatever the opaque bit
// says, and tested against depth, too, where depth is not enabled.
using enum Variant;
using enum Entry_Step;
constexpr auto entry_steps =
    rule_table<Members<Variant>>(Entry_Steps{missing_image, mask},
                                 {{{mapped_z}, {depth_off, missing_image, mask}},
                                  {{rgb}, {blending, missing_image, mask}},
                                  {{rgb_z}, {blending, depth_off, missing_image, mask}},
                                  {{rgb_alpha}, {missing_image, mask, opaque_image}},
                                  {{rgb_alpha_z}, {mask, depth_off, missing_image, opaque_image}}})
        .all();

struct Steps {
  static bool holds(Entry_Step step, Variant variant, const Image_Call& call) {
    if (step == mask) return mask_in_force(call.renderer, call.rendition);
    return image_step_holds(step, call.renderer, variant);
  }

  static void take(Entry_Step step, Variant variant, Image_Call& call) {
    switch (step) {
      case blending:
        return enter_image(with_alpha(variant), call);
      case depth_off:
        return enter_image(without_depth(variant), call);
      case mask:
        if (lacks_image(call.renderer, variant)) return;
        return draw(variant, Masking::masked, alpha_of(variant), call);
      case opaque_image:
        return draw(variant, Masking::open, Image_Alpha::ignored, call);
      default:
        return;  // missing image
    }
  }
};

void draw_open(Variant variant, Image_Call& call) {
  draw(variant, Masking::open, alpha_of(variant), call);
}

}  // namespace

void enter_image(Variant variant, Image_Call& call) {
  enter_by<Steps, draw_open>(entry_steps[Members<Variant>::index(variant)], variant, call);
}

Image_Call image_call(Software_Z_Buffer& renderer, Variant variant, const KT_Rendition& rendition,
                      const KT_DCI_Point* start, const KT_DCI_Point* end, int stride,
                      const void* pixels) {
  constexpr int points = 2;
  const Entry_Step_Set held =
      held_steps<steps_in(entry_steps)>(renderer, variant, rendition, points);
  return {
      {renderer, rendition, held}, *start, *end, stride, static_cast<const std::uint8_t*>(pixels)};
}

}  // namespace zbuffer::primitives
