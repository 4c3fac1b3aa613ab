// A model made ready to be drawn from any side.
#pragma once

#include <vector>

#include "apps/model.h"
#include "apps/strips.h"

namespace kv {

struct Scene {
  Model model;
  std::vector<Strip_Set> strips;  // by mesh
};

inline Scene make_scene(Model model) {
  Scene scene;
  for (const Mesh& mesh : model.meshes) scene.strips.push_back(make_strips(mesh));
  scene.model = std::move(model);
  return scene;
}

}  // namespace kv
