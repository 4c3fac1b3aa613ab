// Stores: how a source's value and the old pixel make the new one, and what the contrast colour of
// a pattern does. A store is a function (old, source) -> new; a contrast is a function old -> new.
// `branch_free` stores may also be worked out for pixels that then stay as they are.
#pragma once

#include "module/pixels/blend.h"
#include "module/pixels/merge.h"
#include "module/pixels/run.h"
#include "module/triangles/sources.h"

namespace zbuffer {

struct Replace {
  static constexpr bool branch_free = true;

  template <class Pixel>
  Pixel operator()(Pixel, Pixel source) const {
    return source;
  }
  template <class Pixel>
  void run(Pixel* to, std::ptrdiff_t count, const Constant_Running<Pixel>& source) const {
    fill_run(to, count, source.word);
  }
  void run(std::uint8_t* to, std::ptrdiff_t count, const Dithered_Source::Running& source) const {
    fill_by_address(to, count, source.row);
  }
};

/// A constant colour under its alpha rule; the source repeats what the mix already holds.
struct Mix_Store {
  static constexpr bool branch_free = true;

  Mix mix;

  std::uint32_t operator()(std::uint32_t old, std::uint32_t) const { return mix(old); }
  void run(std::uint32_t* to, std::ptrdiff_t count, const auto&) const { mix.run(to, count); }
};

template <Alpha_Rule rule>
struct Blend_Source {
  static constexpr bool branch_free = true;

  std::uint32_t operator()(std::uint32_t old, std::uint32_t source) const {
    return blended_by_source<rule>(old, source);
  }
};

struct Merge_Store {
  static constexpr bool branch_free = true;

  Rgb_Merge merge;

  std::uint32_t operator()(std::uint32_t old, std::uint32_t source) const {
    return merge(old, source);
  }
  void run(std::uint32_t* to, std::ptrdiff_t count, const auto& source) const {
    for (std::ptrdiff_t i = 0; i < count; ++i) to[i] = merge(to[i], source.word);
  }
};

/// Merging indices searches the palette: only for pixels that are really drawn.
struct Mapped_Merge_Store {
  static constexpr bool branch_free = false;

  Mapped_Merge merge;

  std::uint8_t operator()(std::uint8_t old, std::uint8_t source) const {
    return merge(old, source);
  }
  void run(std::uint8_t* to, std::ptrdiff_t count, const auto& source) const {
    for (std::ptrdiff_t i = 0; i < count; ++i) to[i] = merge(to[i], source.word);
  }
};

struct Mix_Contrast {
  Mix mix;
  std::uint32_t operator()(std::uint32_t old) const { return mix(old); }
};

struct Merge_Contrast {
  Rgb_Merge merge;
  std::uint32_t word;
  std::uint32_t operator()(std::uint32_t old) const { return merge(old, word); }
};

struct Index_Contrast {
  std::uint8_t index;
  std::uint8_t operator()(std::uint8_t) const { return index; }
};

struct Mapped_Merge_Contrast {
  Mapped_Merge merge;
  std::uint8_t index;
  std::uint8_t operator()(std::uint8_t old) const { return merge(old, index); }
};

/// A source with its store and contrast: all that a span needs to know of colour.
template <class Source_Type, class Store_Type, class Contrast_Type>
struct Paint {
  using Source = Source_Type;
  using Store = Store_Type;
  using Pixel = typename Source::Pixel;

  Source source;
  Store store;
  Contrast_Type contrast;
};
template <class Source, class Store, class Contrast>
Paint(Source, Store, Contrast) -> Paint<Source, Store, Contrast>;

}  // namespace zbuffer
