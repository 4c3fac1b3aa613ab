// What draws the pixels of textured strips, after all entry steps: a table of functions for each
// set.
#pragma once

#include "module/textures/call.h"
#include "module/textures/sampler.h"

namespace zbuffer::textures {

struct Scans {
  // By texturing; null where the set has none.

  /// A strip that lies inside.
  void (*inside[value_count<Texturing>])(const Textured_Call&);
  /// A strip of one triangle, cut by the hard clip and solid whatever the pattern.
  void (*clipped[value_count<Texturing>])(const Textured_Call&, const Held_Texture&);
};

// Each in a file of its own.
extern const Scans scans_mapped_z, scans_cut_out, scans_rgb_z, scans_rgb_alpha_z;

/// The scan of lit strips, in `Mapped_Z` without transparency alone.
void draw_lit_inside(const Textured_Call& strip);

}  // namespace zbuffer::textures
