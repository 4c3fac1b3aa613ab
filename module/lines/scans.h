// What draws the pixels of polylines, after all entry steps: a table of functions for each variant.
#pragma once

#include "module/core/call.h"

namespace zbuffer::lines {

enum class Merging : std::uint8_t { off, on };

struct Scans {
  // By kind and masking; null where the variant has none.

  /// A list of points that lie inside.
  void (*inside[value_count<Kind>][value_count<Masking>])(const Strip_Call&, Merging);
  /// What is inside of the one segment of a call, by the outcodes of its ends.
  void (*clipped[value_count<Kind>][value_count<Masking>])(const Strip_Call&, unsigned code0,
                                                           unsigned code1);
};

// Each in a file of its own.
extern const Scans scans_rgb_alpha, scans_rgb, scans_mapped, scans_mapped_z, scans_rgb_alpha_z,
    scans_rgb_z;

}  // namespace zbuffer::lines
