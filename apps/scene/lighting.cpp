// Ambient light, two directed lights and a highlight, all in the coordinates of the model.
#include "apps/scene/lighting.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr double ambient = 0.24;
constexpr double key_strength = 0.62;
constexpr double fill_strength = 0.22;
constexpr double shine_strength = 0.16;
constexpr double shininess = 28;
// The normals of a closed surface point slightly away from the viewer just behind its outline.
// Only from here on is a surface taken as seen from its back, else outlines would flicker.
constexpr double backside_cosine = -0.25;

float lit(float component, double light, double shine) {
  return static_cast<float>(std::min(1.0, component * light + shine));
}

}  // namespace

Lighting::Lighting(const View& view)
    : key_(normalized(view.right() * -0.35 + view.up() * 0.45 + view.toward_viewer())),
      fill_(normalized(view.right() * 0.9 + view.up() * -0.15 + view.toward_viewer() * 0.5)),
      highlight_(normalized(key_ + view.toward_viewer())) {}

Color Lighting::shade(Vec3 normal, Vec3 toward_eye, const Color& surface) const {
  const Vec3 n = dot(normal, toward_eye) < backside_cosine ? -normal : normal;
  const double light = ambient + key_strength * std::max(0.0, dot(n, key_)) +
                       fill_strength * std::max(0.0, dot(n, fill_));
  const double shine = shine_strength * std::pow(std::max(0.0, dot(n, highlight_)), shininess);
  return {lit(surface.red, light, shine), lit(surface.green, light, shine),
          lit(surface.blue, light, shine), surface.alpha};
}

Color Lighting::shade(Vec3 normal, Vec3 toward_eye, const Color& surface,
                      const Material& material) const {
  if (material.unlit != 0) return surface;
  const Color shaded = shade(normal, toward_eye, surface);
  const Color& own = material.emission;
  return {std::min(1.0f, shaded.red + own.red), std::min(1.0f, shaded.green + own.green),
          std::min(1.0f, shaded.blue + own.blue), shaded.alpha};
}

}  // namespace kv
