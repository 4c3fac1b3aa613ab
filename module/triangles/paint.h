// Paint: all that a span needs of colour, which is a source, its blend and the contrast colour of a
// pattern.
#pragma once

namespace zbuffer::triangles {

/// The contrast colour with its blend.
template <class Blend, class Pixel>
struct Contrast {
  Blend blend;
  Pixel pixel;

  Pixel operator()(Pixel old) const { return blend(old, pixel); }
};
template <class Blend, class Pixel>
Contrast(Blend, Pixel) -> Contrast<Blend, Pixel>;

template <class Source_Type, class Blend_Type, class Contrast_Type>
struct Paint {
  using Source = Source_Type;
  using Cursor = typename Source::Cursor;
  using Blend = Blend_Type;
  using Pixel = typename Source::Pixel;

  Source source;
  Blend blend;
  Contrast_Type contrast;
};
template <class Source, class Blend, class Contrast>
Paint(Source, Blend, Contrast) -> Paint<Source, Blend, Contrast>;

}  // namespace zbuffer::triangles
