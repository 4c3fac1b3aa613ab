// A model made ready to be drawn from any side.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "apps/load/model.h"
#include "apps/scene/bulk.h"
#include "apps/scene/edges.h"
#include "apps/scene/strips.h"

namespace kv {

struct Scene {
  Model model;
  std::vector<Strip_Set> strips;  // by mesh

  // By mesh. Found when they are first needed; not for several threads at once.
  const std::vector<Edges>& edges(Edge_Choice choice) const {
    auto& found = edges_[choice == Edge_Choice::feature ? 1 : 0];
    if (!found) {
      found.emplace();
      for (const Mesh& mesh : model.meshes) found->push_back(edges_of(mesh, choice));
    }
    return *found;
  }

 private:
  mutable std::array<std::optional<std::vector<Edges>>, 2> edges_;
};

inline Scene make_scene(Model model) {
  Scene scene;
  for (const Mesh& mesh : model.meshes) scene.strips.push_back(make_strips(mesh));
  const Found_Bulk found = bulk_of(model);
  model.bulk = found.bulk;
  if (found.left_out > 0)
    model.warnings.push_back(std::to_string(found.left_out) + " of " +
                             std::to_string(found.vertices) +
                             " vertices lie far away; the picture shows what the others fill");
  scene.model = std::move(model);
  return scene;
}

}  // namespace kv
