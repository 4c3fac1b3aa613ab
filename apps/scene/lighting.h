// The light on a surface: a key light beside the viewer's head and a weaker fill from the other
// side, both moving with the viewer, so that no view of a model is dark.
#pragma once

#include "apps/load/model.h"
#include "apps/scene/camera.h"

namespace kv {

class Lighting {
 public:
  explicit Lighting(const View& view);

  // The colour of a surface. Both sides are lit; `toward_eye` decides which one is seen.
  Color shade(Vec3 normal, Vec3 toward_eye, const Color& surface) const;
  // The same for the light that a material gives off and for those that take none.
  Color shade(Vec3 normal, Vec3 toward_eye, const Color& surface, const Material& material) const;

 private:
  Vec3 key_, fill_, highlight_;
};

}  // namespace kv
