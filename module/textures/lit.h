// Light on a textured triangle: a diffuse part that multiplies the texel and a specular part that
// is added, both interpolated from the corners.
//
// The material computes the light. The two parts are computed apart, through two renditions made
// for that: one white and without specular colour, one black.
#pragma once

#include "host/rendition.h"
#include "module/textures/blends.h"

namespace zbuffer::textures {

/// Light of a corner, a value a channel: red, green, blue.
struct Corner_Light {
  float diffuse[3];
  float specular[3];
};

/// The two renditions of a call. They share everything but colour and material with the drawn one.
class Lights {
 public:
  explicit Lights(const KT_Rendition& drawn);

  /// Computes the light of three corners: diffuse for all, then specular for all.
  void shade(const KT_Vector* const (&vectors)[3], Corner_Light (&lights)[3]) const;

 private:
  KT_Rendition diffuse_;
  KT_Rendition specular_;
};

/// Interpolants of a lit edge: diffuse channels after the geometry, and specular ones as floats.
struct Light_Interpolants {
  using Words = Joined<Geometry_Interpolants,
                       Interpolants<Byte_Interpolant, Byte_Interpolant, Byte_Interpolant>>;
  static constexpr std::size_t count = Words::count;
};

}  // namespace zbuffer::textures

namespace zbuffer {

template <>
struct Vertex<textures::Light_Interpolants> : Vertex<textures::Light_Interpolants::Words> {
  std::array<float, 3> specular;
};

template <>
class Edge<textures::Light_Interpolants> : public Edge<textures::Light_Interpolants::Words> {
 public:
  using Words = Edge<textures::Light_Interpolants::Words>;
  using Corner = Vertex<textures::Light_Interpolants>;

  Edge(const Corner& from, const Corner& to) : Words(from, to), specular_(from.specular) {
    const std::int32_t rows = to.y - from.y;
    for (std::size_t i = 0; i < 3; ++i) {
      const float difference = to.specular[i] - from.specular[i];
      specular_step_[i] = rows == 1 ? difference : difference / static_cast<float>(rows);
    }
  }

  void advance() {
    Words::advance();
    for (std::size_t i = 0; i < 3; ++i) specular_[i] += specular_step_[i];
  }
  float specular(std::size_t channel) const { return specular_[channel]; }

 private:
  std::array<float, 3> specular_;
  std::array<float, 3> specular_step_;
};

}  // namespace zbuffer

namespace zbuffer::textures {

struct Light_Factors {
  Cube_Factors<Quad> diffuse;
  Cube_Factors<Quad> specular;
};

/// Light as a modulation: sums in words along the span, both parts.
struct Light_Modulation {
  struct Cursor {
    Quad_Line diffuse[3];
    Quad_Line specular[3];

    Light_Factors at(std::int32_t i) const {
      return {{diffuse[0].at(i), diffuse[1].at(i), diffuse[2].at(i)},
              {specular[0].at(i), specular[1].at(i), specular[2].at(i)}};
    }
  };

  template <class Edge_Type>
  Cursor begin(const Span_Start& start, const Edge_Type& left, const Edge_Type& right) const {
    const auto diffuse = [&](std::size_t i) {
      return between_edges(start, left[first_channel + i], right[first_channel + i]);
    };
    const auto whole = [](float value) { return as_word(truncated(static_cast<double>(value))); };
    const auto specular = [&](std::size_t i) {
      return between_edges(start, whole(left.specular(i)), whole(right.specular(i)));
    };
    return {{diffuse(0), diffuse(1), diffuse(2)}, {specular(0), specular(1), specular(2)}};
  }
};

/// The dithered index with light, which may go beyond full and below nothing: each channel is held
/// within the cube.
class Lit_Dither_Blend : public Dither_Blend {
 public:
  Lit_Dither_Blend(const Cube& cube, std::uint8_t contrast) : Dither_Blend(cube, contrast) {}

  class Row : public Dither_Blend::Row {
   public:
    using Dither_Blend::Row::Row;

    Made<Quad> make(Quad texels, const Light_Factors& light, Quad, const Pixel* to) const {
      const Quad dither = thresholds(to);
      const auto place = [&](int byte, Quad diffuse, Quad specular, std::int32_t scale) {
        const Quad lit = ((texels >> (8 * byte)) & 255u) * diffuse + specular;
        return held(shift_signed(shift_signed(lit, 8) + dither, 16), scale);
      };
      const Channels& scale = cube().scale;
      return {index(place(2, light.diffuse.red, light.specular.red, scale.red),
                    place(1, light.diffuse.green, light.specular.green, scale.green),
                    place(0, light.diffuse.blue, light.specular.blue, scale.blue)),
              Quad{}};
    }

   private:
    using Signed_Quad __attribute__((vector_size(16))) = std::int32_t;

    static Quad shift_signed(Quad words, int bits) {
      return reinterpret_cast<Quad>(reinterpret_cast<Signed_Quad>(words) >> bits);
    }
    static Quad held(Quad places, std::int32_t scale) {
      const auto q = reinterpret_cast<Signed_Quad>(places);
      const Quad negative = reinterpret_cast<Quad>(q < Signed_Quad{});
      const Quad beyond = reinterpret_cast<Quad>(q >= Signed_Quad{} + scale);
      return select(beyond, Quad{} + as_word(scale), places) & ~negative;
    }
  };

  Row row(std::int32_t y) const { return Row(*this, y); }
};

}  // namespace zbuffer::textures
