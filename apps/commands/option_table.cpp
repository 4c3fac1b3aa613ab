// The table, a row an option. The help text of an option comes from here, its
// default from the value that `Options` begins with.
#include "apps/commands/option_table.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace kv {
namespace {

using namespace words;

void add_camera_options(CLI::App& app, Camera_Options& camera) {
  Option_Group group(app, "Camera");
  group.number("--azimuth", camera.azimuth, -360.0, 360.0, "DEG",
               "angle around the up axis, 0 is the front");
  group.number("--elevation", camera.elevation, -90.0, 90.0, "DEG", "angle above the horizon");
  group.number("--zoom", camera.zoom, least_zoom, greatest_zoom, "F", "1 shows the whole model");
  group.number("--distance", camera.distance, 0.0, 1000.0, "F",
               "of the eye: 1 shows the whole model, 0 is in its middle");
  group.parsed(
      "--pan",
      [&camera](const std::string& text) {
        const Pair pair = parse_pair(text, farthest_pan);
        camera.pan_x = pair.first;
        camera.pan_y = pair.second;
      },
      [&camera] { return text_of(camera.pan_x) + "," + text_of(camera.pan_y); }, "X,Y",
      "moves the picture right and up, in parts of its shorter side");
  group.choice("--framing", camera.framing, framings,
               "what fits the window at zoom 1: the model as it is seen, or the sphere around\n"
               "it, so that the model keeps its size from all sides");
  group.flag("--ortho", camera.orthographic, "parallel projection");
  group.choice("--up", camera.up, axes, "up axis of the model; auto is z for STL, else y");
}

void add_drawing_options(CLI::App& app, Drawing& drawing) {
  Option_Group group(app, "Drawing");
  group.choice("--palette", drawing.cube_steps, palettes,
               "colour cube of the mapped variants, by steps a channel");
  group.number("--pattern", drawing.pattern, 0, last_face_pattern, "N",
               "pattern of the faces: 1 to 63 greys, 64 solid, 65 to 73 hatches");
  group.number("--opacity", drawing.opacity, 0.0, 1.0, "A",
               "of the faces, in the variants of direct colour");
  group.parsed(
      "--clip",
      [&drawing](const std::string& text) {
        drawing.clip = text == "circle" ? Clip::circle() : Clip::from_file(text);
      },
      [&drawing] { return drawing.clip.word; }, "circle|FILE",
      "draw only inside a circle, or inside polygons, one a line: x,y x,y x,y ...\n"
      "in hundredths of the picture, y from the top");
  group.flag("--polygons", drawing.polygons,
             "pass faces of more than three corners on whole, each in one colour and without\n"
             "textures");
  group.flag("--merge", drawing.merge,
             "overlapping faces keep the bits that their colours have in common; the module\n"
             "merges flat and one-coloured faces without depth");
}

void add_texture_options(CLI::App& app, Options& options) {
  Option_Group group(app, "Textures");
  Texture_Drawing& textures = options.drawing.textures;
  group.choice("--texture", textures.filter, texture_filters,
               "the nearest texel, or the mean of the nearest four");
  group.flag("--perspective-correct", textures.perspective_correct,
             "textures keep their perspective on all faces, not only where it is seen");
  group.flag("--no-textures", options.textures, "the materials' colours alone", false);
}

void add_line_options(CLI::App& app, Drawing& drawing) {
  Option_Group group(app, "Lines and points");
  Line_Drawing& lines = drawing.lines;
  group.choice("--wire", lines.edges, edge_choices, "edges of wireframe and hidden-line pictures");
  group.flag("--antialias", lines.antialias, "smooth lines, in rgb and rgb-alpha");
  group.number("--line-width", lines.width, 1, widest_line, "N", "in pixels");
  group.number("--line-pattern", lines.pattern, 0, last_line_pattern, "N",
               "0 is solid, others are dashes and dots");
  group.number("--point-size", drawing.point_size, 1, largest_point, "N",
               "of the points of a model and of --mode points, in pixels");
  group.flag("--outline", lines.outline, "lines with a rim in the colour of the background");
  group.flag("--edges", drawing.faces_as_edges,
             "let the module draw faces as their edges, in the variants rgb-z and rgb-alpha-z");
}

// A colour, or else the name of a picture.
void take_background(Options& options, const std::string& text) {
  try {
    options.background = parse_color(text);
  } catch (const std::invalid_argument& error) {
    const bool names_file = text.find_first_of("./") != std::string::npos && text[0] != '#';
    if (!names_file)
      throw std::invalid_argument(std::string(error.what()) + ", or the file of a picture");
    options.background_picture = text;
  }
}

}  // namespace

// CLI::Range lets NaN through.
const CLI::Validator Option_Group::is_number(
    [](const std::string& text) {
      return std::isnan(std::strtod(text.c_str(), nullptr)) ? text + " is no number"
                                                            : std::string();
    },
    "");

std::string text_of(double value) {
  char text[400];
  return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr};
}

void add_picture_options(CLI::App& app, Options& options) {
  Option_Group group(app);
  group.parsed(
      "--size", [&options](const std::string& text) { options.size = parse_size(text); },
      [&options] { return text_of(options.size); }, "WxH", "of the picture");
  group.choice("--variant", options.variant, variants, "configuration of the module");
  group.choice("--mode", options.drawing.style, styles, "what is drawn of the model");
  group.parsed(
      "--background", [&options](const std::string& text) { take_background(options, text); },
      [&options] {
        return options.background_picture.empty() ? text_of(options.background)
                                                  : options.background_picture;
      },
      "COLOR|FILE",
      "a colour, or a picture (PNG, JPEG or TGA) that is scaled\n"
      "to cover the frame");
  add_camera_options(app, options.camera);
  add_drawing_options(app, options.drawing);
  add_texture_options(app, options);
  add_line_options(app, options.drawing);
}

}  // namespace kv
