// What draws the pixels of strips, after all entry steps: a table of functions for each variant.
#pragma once

#include "module/core/call.h"

namespace zbuffer::triangles {

struct Scans {
  /// By kind and masking; null where the variant has none.
  using Table = void (*[value_count<Kind>][value_count<Masking>])(const Strip_Call&);

  Table inside;   ///< a strip that lies inside
  Table clipped;  ///< a strip of one triangle, cut by the hard clip
};

// Each in a file of its own.
extern const Scans scans_rgb_alpha, scans_rgb, scans_mapped, scans_mapped_z, scans_rgb_alpha_z,
    scans_rgb_z;

}  // namespace zbuffer::triangles
