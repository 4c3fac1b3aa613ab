// How the faces of a picture are drawn, beside their colours.
#pragma once

#include <optional>
#include <string>

#include "apps/common/option_text.h"
#include "apps/draw/clip.h"
#include "apps/scene/edges.h"
#include "host/color.h"

namespace kv {

// What a picture shows of a model.
enum class Style {
  shaded,       // faces, a colour a point
  flat,         // faces, a colour each
  wireframe,    // edges in the lit colours of their ends
  hidden_line,  // dark edges before faces in the colour of the background
  points        // vertices
};

constexpr bool shows_faces(Style style) {
  return style == Style::shaded || style == Style::flat || style == Style::hidden_line;
}
constexpr bool shows_lines(Style style) {
  return style == Style::wireframe || style == Style::hidden_line;
}

struct Line_Drawing {
  Edge_Choice edges = Edge_Choice::all;
  bool antialias = false;
  int width = 1;    // pixels
  int pattern = 0;  // 0: solid
  bool outline = false;
};

enum class Texture_Filter {
  nearest,
  linear  // only the framework's general routines draw it
};

struct Texture_Drawing {
  Texture_Filter filter = Texture_Filter::nearest;
  bool perspective_correct = false;
};

struct Drawing {
  Style style = Style::shaded;
  Line_Drawing lines;
  int point_size = 3;  // pixels across
  Texture_Drawing textures;
  bool polygons = false;        // faces are handed over whole, one colour each
  bool faces_as_edges = false;  // the module draws strips as the lines of their edges
  int cube_steps = 6;           // a channel, of the palette that mapped variants draw with
  std::optional<int> pattern;   // face pattern; without one faces are solid
  double opacity = 1;
  Clip clip{};
  bool merge = false;  // overlapping faces are joined by merge control
};

inline constexpr int last_face_pattern = 73;
inline constexpr int widest_line = 64;
inline constexpr int largest_point = 64;
inline constexpr int last_line_pattern = 16;

inline constexpr KT_RGB32 line_color{0x30, 0x26, 0x20, 255};

// Depth offsets of faces under the edges that are drawn over them. A model takes what the greatest
// leaves of the depths, so that even a face as deep as the model can be moved.
inline constexpr int least_hiding_offset = 16, greatest_hiding_offset = 32768;

// A regular cube of colours with `steps` a channel, 2 to 6.
KT_Palette cube_palette(int steps);

}  // namespace kv
