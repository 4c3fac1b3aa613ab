// One primitive drawn in one way.
#pragma once

#include <string>
#include <string_view>

#include "apps/commands/gallery_families.h"
#include "apps/draw/variant.h"
#include "apps/files/picture.h"

namespace kv {

enum class Treatment {
  solid,
  patterned,     // with holes
  masked,        // to a circle
  merged,        // two copies in different colours
  depth_tested,  // the right half lies behind a rectangle
  alpha,         // half transparent, before dark bars
  clipped        // larger than the window
};

struct Gallery_Cell {
  std::string module_path;
  Variant variant;
  Treatment treatment;
};

// Without a depth buffer there is nothing to test.
constexpr bool applies(const Variant& variant, Treatment treatment) {
  return variant.depth || treatment != Treatment::depth_tested;
}

// `cell_side` each way. Throws a Failure.
Picture draw_cell(const Primitive& primitive, const Gallery_Cell& cell);

}  // namespace kv
