// What all drawing of one picture shares, as plain values.
#pragma once

#include "apps/common/option_text.h"
#include "apps/draw/drawing.h"
#include "apps/draw/renderer.h"
#include "apps/draw/variant.h"
#include "host/application.h"

namespace kv {

// What a session is made for.
struct Configuration {
  Variant variant;
  Size size;  // of the frame buffer
  Drawing drawing;
  KT_RGB32 background;
  KT_Palette palette{};  // null unless colours are mapped
};

// Patterns and dithers repeat within so many pixels: frame buffers begin at multiples.
inline constexpr int part_alignment = 16;

// Which part of a picture the frame buffer holds, in device coordinates of the picture.
struct Frame {
  Size picture;
  KT_Int_Rectangle part;  // what is drawn and read
  KT_Int_XY origin{};     // of the frame buffer
  bool in_parts = false;  // strips and lines go through the actions of double precision

  static Frame of_whole(const Size& size);
  static Frame of_part(const KT_Int_Rectangle& part, const Size& picture);
};

struct Canvas {
  const Renderer& renderer;
  const Configuration& configuration;
  Frame frame;
  KT_Rendition rendition;
};

// Sets the options of the renderer and lets the module take them.
void configure(Renderer& renderer, const Configuration& configuration);
// Turns a configured renderer to a part of a picture.
void turn_to(const Frame& frame, Renderer& renderer, const Configuration& configuration);
// What every call begins with.
KT_Rendition rendition_of(const Configuration& configuration, const Frame& frame);

// The colour for what is drawn in one, also by its index in the palette, if there is one.
void set_color(KT_Rendition& rendition, const KT_RGB32& color, const KT_Palette& palette);

}  // namespace kv
