// The textures of a model as the framework's material objects.
#pragma once

#include <vector>

#include "apps/draw/drawing.h"
#include "apps/load/model.h"
#include "host/application.h"

namespace kv {

// By material of the model; null for those without a texture. Texels are multiplied by the colours
// of points. `blended`: layers show in part; else their texels are cut out or opaque.
std::vector<KT_Handle<KT_Material_Object>> texture_materials(const Model& model,
                                                             Texture_Filter filter, bool blended);

// Rows from the top down, in the framework's order of channels.
KT_Shared_Image shared_image(const Image& image);

}  // namespace kv
