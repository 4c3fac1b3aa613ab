// The table of keys: each one's name, its line in the help and what it does.
#include "apps/view/keys.h"

#include <algorithm>
#include <cctype>

#include "apps/view/moves.h"

namespace kv {
namespace {

constexpr int turn = 10;  // pixels of dragging that an arrow key equals

template <Style style>
void show(Options& options) {
  options.drawing.style = style;
}

template <const Variant& variant>
void draw_in(Options& options) {
  options.variant = variant;
}

// Through the patterns and the state of having none, which comes first.
void step_pattern(Options& options, int step) {
  constexpr int count = last_face_pattern + 2;
  const int place = options.drawing.pattern.value_or(-1) + 1;
  const int next = (place + step + count) % count;
  options.drawing.pattern.reset();
  if (next > 0) options.drawing.pattern = next - 1;
}

void step_opacity(Options& options, int tenths) {
  const double now = options.drawing.opacity * 10 + tenths;
  options.drawing.opacity = std::clamp(static_cast<double>(static_cast<int>(now + 0.5)), 0.0, 10.0);
  options.drawing.opacity /= 10;
}

void step_width(Options& options, int step) {
  int& width = options.drawing.lines.width;
  width = std::clamp(width + step, 1, widest_line);
}

void next_line_pattern(Options& options) {
  int& pattern = options.drawing.lines.pattern;
  pattern = (pattern + 1) % (last_line_pattern + 1);
}

void next_palette(Options& options) {
  int& steps = options.drawing.cube_steps;
  steps = steps > 2 ? steps - 1 : 6;
}

void next_up_axis(Options& options) {
  Up_Axis& up = options.camera.up;
  up = up == Up_Axis::minus_z ? Up_Axis::x : static_cast<Up_Axis>(static_cast<int>(up) + 1);
}

void zoom_in_middle(Options& options, int steps) {
  const Window_Point middle{options.size.width / 2, options.size.height / 2};
  zoom_at(options.camera, steps, middle, options.size);
}

template <class Value>
void exchange(Value& value, Value one, Value other) {
  value = value == one ? other : one;
}

using enum Key_Task;

constexpr Key keys[] = {
    {"1", "shaded faces", change, show<Style::shaded>},
    {"2", "flat faces", change, show<Style::flat>},
    {"3", "wireframe", change, show<Style::wireframe>},
    {"4", "hidden lines", change, show<Style::hidden_line>},
    {"5", "points", change, show<Style::points>},

    {"F1", "variant rgb", change, draw_in<Variant::rgb>},
    {"F2", "variant rgb-z", change, draw_in<Variant::rgb_z>},
    {"F3", "variant rgb-alpha", change, draw_in<Variant::rgb_alpha>},
    {"F4", "variant rgb-alpha-z", change, draw_in<Variant::rgb_alpha_z>},
    {"F5", "variant mapped", change, draw_in<Variant::mapped>},
    {"F6", "variant mapped-z", change, draw_in<Variant::mapped_z>},

    {"T", "textures on or off", change, [](Options& o) { o.textures = !o.textures; }},
    {"L", "nearest or linear texels", change,
     [](Options& o) {
       exchange(o.drawing.textures.filter, Texture_Filter::nearest, Texture_Filter::linear);
     }},
    {"K", "textures correct in perspective", change,
     [](Options& o) {
       o.drawing.textures.perspective_correct = !o.drawing.textures.perspective_correct;
     }},
    {"G", "whole polygons", change, [](Options& o) { o.drawing.polygons = !o.drawing.polygons; }},
    {"E", "faces as their edges", change,
     [](Options& o) { o.drawing.faces_as_edges = !o.drawing.faces_as_edges; }},
    {"[", "pattern before", change, [](Options& o) { step_pattern(o, -1); }},
    {"]", "next pattern", change, [](Options& o) { step_pattern(o, 1); }},
    {",", "less opaque", change, [](Options& o) { step_opacity(o, -1); }},
    {".", "more opaque", change, [](Options& o) { step_opacity(o, 1); }},
    {"B", "next palette of mapped", change, next_palette},
    {"M", "merge", change, [](Options& o) { o.drawing.merge = !o.drawing.merge; }},
    {"C", "circular clip", change,
     [](Options& o) { o.drawing.clip = o.drawing.clip ? Clip{} : Clip::circle(); }},

    {"W", "all or feature edges", change,
     [](Options& o) { exchange(o.drawing.lines.edges, Edge_Choice::all, Edge_Choice::feature); }},
    {"A", "smooth lines", change,
     [](Options& o) { o.drawing.lines.antialias = !o.drawing.lines.antialias; }},
    {"X", "lines with a rim", change,
     [](Options& o) { o.drawing.lines.outline = !o.drawing.lines.outline; }},
    {"D", "next dashes", change, next_line_pattern},
    {"9", "thinner lines", change, [](Options& o) { step_width(o, -1); }},
    {"0", "wider lines", change, [](Options& o) { step_width(o, 1); }},

    {"O", "parallel projection", change,
     [](Options& o) { o.camera.orthographic = !o.camera.orthographic; }},
    {"U", "next up axis", change, next_up_axis},
    {"Y", "steady or close framing", change,
     [](Options& o) { exchange(o.camera.framing, Framing::steady, Framing::close); }},
    {"Left", "turn, also by dragging", change,
     [](Options& o) {
       orbit(o.camera, {-turn, 0});
     }},
    {"Right", "", change,
     [](Options& o) {
       orbit(o.camera, {turn, 0});
     }},
    {"Up", "", change,
     [](Options& o) {
       orbit(o.camera, {0, -turn});
     }},
    {"Down", "", change,
     [](Options& o) {
       orbit(o.camera, {0, turn});
     }},
    {"+", "zoom in, also by the wheel", change, [](Options& o) { zoom_in_middle(o, 1); }},
    {"=", "", change, [](Options& o) { zoom_in_middle(o, 1); }},
    {"-", "zoom out", change, [](Options& o) { zoom_in_middle(o, -1); }},
    {"Home", "the first view", reset},
    {"Space", "spin", spin},

    {"S", "screenshot", screenshot},
    {"R", "reload", reload},
    {"I", "readout on or off", readout},
    {"H", "this help", help},
    {"Q", "quit, also Escape", quit},
    {"Escape", "", quit},
};

bool same_letter(char a, char b) {
  return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

}  // namespace

std::span<const Key> all_keys() {
  return keys;
}

const Key* find_key(std::string_view name) {
  const auto found = std::find_if(std::begin(keys), std::end(keys), [&](const Key& key) {
    return std::equal(key.name.begin(), key.name.end(), name.begin(), name.end(), same_letter);
  });
  return found == std::end(keys) ? nullptr : found;
}

Options drawable(const Options& options) {
  Options result = options;
  if (!options.variant.direct_color) result.drawing.opacity = 1;
  return result;
}

}  // namespace kv
