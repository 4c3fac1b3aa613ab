// A model made ready to be drawn from any side.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "apps/load/model.h"
#include "apps/scene/edges.h"
#include "apps/scene/strips.h"

namespace kv {

struct Scene {
  Model model;
  std::vector<Strip_Set> strips;  // by mesh

  // By mesh. Found when they are first needed; not for several threads at once.
  const std::vector<std::vector<Edge>>& edges(Edge_Choice choice) const {
    auto& found = edges_[choice == Edge_Choice::feature ? 1 : 0];
    if (!found) {
      found.emplace();
      for (const Mesh& mesh : model.meshes) found->push_back(edges_of(mesh, choice));
    }
    return *found;
  }

 private:
  mutable std::array<std::optional<std::vector<std::vector<Edge>>>, 2> edges_;
};

inline Scene make_scene(Model model) {
  Scene scene;
  for (const Mesh& mesh : model.meshes) scene.strips.push_back(make_strips(mesh));
  scene.model = std::move(model);
  return scene;
}

}  // namespace kv
