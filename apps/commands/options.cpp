#include "apps/commands/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>

#include "apps/commands/batch.h"
#include "apps/commands/commands.h"
#include "apps/commands/option_words.h"
#include "apps/common/errors.h"
#include "apps/draw/tiles.h"

namespace kv {
namespace {

using namespace words;

constexpr int most_frames = 100000;

[[noreturn]] void refuse(const std::string& what, const std::string& program = "kvdraw") {
  throw Failure(Exit_Code::usage, {}, what, "see " + program + " --help");
}

// Adds an option whose text `parse` turns into `target`; what it throws is shown to the user.
template <class Value>
CLI::Option* add_parsed(CLI::App& app, const std::string& name, Value& target,
                        std::function<Value(const std::string&)> parse, const std::string& help) {
  const auto take = [&target, parse](const std::string& text) { target = parse(text); };
  return app.add_option_function<std::string>(name, take, help);
}

// The same for a choice of words.
template <class Value>
CLI::Option* add_choice(CLI::App& app, const std::string& name, Value& target,
                        const std::map<std::string, Value>& words, const std::string& help) {
  std::string list;
  for (const auto& [word, value] : words) list += (list.empty() ? "" : "|") + word;
  const auto parse = [&words, list](const std::string& text) {
    const auto found = words.find(text);
    if (found == words.end()) throw std::invalid_argument("'" + text + "' is none of " + list);
    return found->second;
  };
  return add_parsed<Value>(app, name, target, parse, help)->type_name(list);
}

CLI::Option* add_number(CLI::App& app, const std::string& name, double& target, double low,
                        double high, const std::string& help) {
  const auto parse = [low, high](const std::string& text) {
    double value = 0;
    if (!CLI::detail::lexical_cast(text, value) || !std::isfinite(value) || value < low ||
        value > high) {
      std::ostringstream words;
      words << "'" << text << "' is no number from " << low << " to " << high;
      throw std::invalid_argument(words.str());
    }
    return value;
  };
  return add_parsed<double>(app, name, target, parse, help);
}

template <class Number>
CLI::Option* add_whole_number(CLI::App& app, const std::string& name, Number& target, int low,
                              int high, const std::string& help) {
  const auto parse = [low, high](const std::string& text) -> Number {
    int value = 0;
    if (!CLI::detail::lexical_cast(text, value) || value < low || value > high)
      throw std::invalid_argument("'" + text + "' is no whole number from " + std::to_string(low) +
                                  " to " + std::to_string(high));
    return value;
  };
  return add_parsed<Number>(app, name, target, parse, help)->type_name("N");
}

CLI::Option* add_pan_option(CLI::App& app, Camera_Options& camera) {
  const auto take = [&camera](const std::string& text) {
    const std::size_t comma = text.find(',');
    const auto part_in = [&](const std::string& part, double& target) {
      return CLI::detail::lexical_cast(part, target) && std::abs(target) <= farthest_pan;
    };
    if (comma == std::string::npos || !part_in(text.substr(0, comma), camera.pan_x) ||
        !part_in(text.substr(comma + 1), camera.pan_y))
      throw std::invalid_argument("'" + text + "' is no pair X,Y of numbers up to " +
                                  std::to_string(static_cast<int>(farthest_pan)));
  };
  return app
      .add_option_function<std::string>(
          "--pan", take, "moves the picture right and up, in parts of its shorter side (0,0)")
      ->type_name("X,Y");
}

void add_camera_options(CLI::App& app, Camera_Options& camera) {
  const std::string group = "Camera";
  add_number(app, "--azimuth", camera.azimuth, -360, 360,
             "angle around the up axis, 0 is the front (30)")
      ->type_name("DEG")
      ->group(group);
  add_number(app, "--elevation", camera.elevation, -90, 90, "angle above the horizon (20)")
      ->type_name("DEG")
      ->group(group);
  add_number(app, "--zoom", camera.zoom, least_zoom, greatest_zoom, "1 shows the whole model (1)")
      ->type_name("F")
      ->group(group);
  add_number(app, "--distance", camera.distance, 0, 1000,
             "of the eye, 1 shows the whole model, 0 is its middle (1)")
      ->type_name("F")
      ->group(group);
  add_pan_option(app, camera)->group(group);
  add_choice(app, "--framing", camera.framing, framings,
             "what fits the window at zoom 1: the model as it is seen, or the sphere around\n"
             "it, so that the model keeps its size from all sides (close; in kvview steady)")
      ->group(group);
  app.add_flag("--ortho", camera.orthographic, "parallel projection")->group(group);
  add_choice(app, "--up", camera.up, axes, "up axis of the model (y)")->group(group);
}

void add_line_options(CLI::App& app, Drawing& drawing) {
  const std::string group = "Lines";
  Line_Drawing& lines = drawing.lines;
  add_choice(app, "--wire", lines.edges, edge_choices,
             "edges of wireframe and hidden-line pictures (all)")
      ->group(group);
  app.add_flag("--antialias", lines.antialias, "smooth lines, in rgb and rgb-alpha")->group(group);
  add_whole_number(app, "--line-width", lines.width, 1, widest_line, "in pixels (1)")->group(group);
  add_whole_number(app, "--line-pattern", lines.pattern, 0, last_line_pattern,
                   "0 is solid, others are dashes and dots (0)")
      ->group(group);
  app.add_flag("--outline", lines.outline, "lines with a rim in the colour of the background")
      ->group(group);
  app.add_flag("--edges", drawing.faces_as_edges,
               "let the module draw faces as their edges, in the variants rgb-z and rgb-alpha-z")
      ->group(group);
}

void add_drawing_options(CLI::App& app, Drawing& drawing) {
  const std::string group = "Drawing";
  add_choice(app, "--palette", drawing.cube_steps, palettes,
             "colour cube of the mapped variants, by steps a channel (cube6)")
      ->group(group);
  add_whole_number(app, "--pattern", drawing.pattern, 0, last_face_pattern,
                   "pattern of the faces: 1 to 63 greys, 64 solid, 65 to 73 hatches")
      ->group(group);
  add_number(app, "--opacity", drawing.opacity, 0, 1,
             "of the faces, in the variants of direct colour (1)")
      ->type_name("A")
      ->group(group);
  const auto take_clip = [](const std::string& text) {
    return text == "circle" ? Clip::circle() : Clip::from_file(text);
  };
  add_parsed<Clip>(app, "--clip", drawing.clip, take_clip,
                   "draw only inside a circle, or inside polygons, one a line: x,y x,y x,y ...\n"
                   "in hundredths of the picture, y from the top")
      ->type_name("circle|FILE")
      ->group(group);
  app.add_flag("--polygons", drawing.polygons,
               "hand faces of more than three corners over whole, each in one colour and without\n"
               "textures")
      ->group(group);
  app.add_flag("--merge", drawing.merge,
               "join overlapping faces like inks on the background; the module merges flat and\n"
               "one-coloured faces without depth")
      ->group(group);
}

void add_texture_options(CLI::App& app, Options& options) {
  const std::string group = "Textures";
  Texture_Drawing& textures = options.drawing.textures;
  add_choice(app, "--texture", textures.filter, texture_filters,
             "the nearest texel, or the mean of the nearest four (nearest)")
      ->group(group);
  app.add_flag("--perspective-correct", textures.perspective_correct,
               "textures keep their perspective on large faces")
      ->group(group);
  app.add_flag_callback(
         "--no-textures", [&options] { options.textures = false; }, "the materials' colours alone")
      ->group(group);
}

// A colour, or else the name of a picture.
void add_background_option(CLI::App& app, Options& options) {
  const auto take = [&options](const std::string& text) {
    try {
      options.background = parse_color(text);
    } catch (const std::invalid_argument& error) {
      const bool names_file = text.find_first_of("./") != std::string::npos && text[0] != '#';
      if (!names_file)
        throw std::invalid_argument(std::string(error.what()) + ", or the file of a picture");
      options.background_picture = text;
    }
  };
  app.add_option_function<std::string>("--background", take,
                                       "a colour, or a picture (PNG, JPEG or TGA) that is scaled\n"
                                       "to cover the frame (#edf0f2)")
      ->type_name("COLOR|FILE");
}

void add_tile_options(CLI::App& app, Options& options) {
  const std::string group = "Pictures larger than a frame buffer";
  const auto parse = [](const std::string& text) {
    const bool square = text.find('x') == std::string::npos;
    const std::optional<Size> tile = find_size(square ? text + "x" + text : text);
    if (!tile || std::max(tile->width, tile->height) > largest_side ||
        std::min(tile->width, tile->height) < smallest_tile_side)
      throw std::invalid_argument("'" + text + "' is no size of tiles; write N or WIDTHxHEIGHT, " +
                                  "each from " + std::to_string(smallest_tile_side) + " to " +
                                  std::to_string(largest_side));
    return tile;
  };
  add_parsed<std::optional<Size>>(app, "--tile", options.tile, parse,
                                  "draw tile by tile, each in a frame buffer of this size")
      ->type_name("N|WxH")
      ->group(group);
  const auto parse_index = [](const std::string& text) {
    int value = 0;
    if (!CLI::detail::lexical_cast(text, value) || value < 0)
      throw std::invalid_argument("'" + text + "' is no number of a tile; 0 is the left top one");
    return std::optional<int>(value);
  };
  add_parsed<std::optional<int>>(app, "--tile-index", options.tile_index, parse_index,
                                 "draw one tile alone into its own file, for kvdraw join")
      ->type_name("I")
      ->group(group);
}

// What renderers do otherwise for a primitive that the edge of a frame buffer cuts, so that tiles
// would not fit together.
void check_whole_over_tiles(const Drawing& drawing, const Variant& variant) {
  if (drawing.merge && !variant.depth && !variant.alpha)
    refuse("--merge does not fit together over the edges of tiles in this variant; rgb-alpha does");
  if (drawing.clip && (shows_lines(drawing.style) || drawing.faces_as_edges))
    refuse(
        "--clip does not hold for lines that the edge of a tile cuts; leave out --clip or --tile");
}

void check_tiles(const Options& options) {
  const std::string size =
      std::to_string(options.size.width) + "x" + std::to_string(options.size.height);
  if (!options.tile) {
    if (std::max(options.size.width, options.size.height) > largest_side)
      refuse("--size " + size + " is larger than a frame buffer, which has at most " +
             std::to_string(largest_side) + " a side; add --tile 1024 to draw it in tiles");
    if (options.tile_index) refuse("--tile-index without --tile, which gives the tiles' size");
    return;
  }
  const int count = Tile_Grid{options.size, *options.tile}.count();
  if (options.tile_index && *options.tile_index >= count)
    refuse("--tile-index " + std::to_string(*options.tile_index) + ": a picture of " + size +
           " in such tiles has " + std::to_string(count) + ", 0 to " + std::to_string(count - 1));
  check_whole_over_tiles(options.drawing, options.variant);
}

void add_limit_options(CLI::App& app, Load_Limits& limits, double& megabytes, double& triangles) {
  const std::string group = "Limits of loading";
  add_number(app, "--load-seconds", limits.seconds, 0.1, 86400, "time to load the model (60)")
      ->type_name("S")
      ->group(group);
  add_number(app, "--load-memory", megabytes, 64, 1 << 20, "memory to load the model in (4096)")
      ->type_name("MB")
      ->group(group);
  add_number(app, "--max-triangles", triangles, 1, 100e6, "largest model accepted (10000000)")
      ->type_name("N")
      ->group(group);
}

void add_model(CLI::App& app, Options& options) {
  app.add_option("MODEL", options.model_path, "model file: OBJ, PLY, STL or glTF")
      ->required()
      ->type_name("");
}

void add_options(CLI::App& app, Options& options) {
  add_parsed<Size>(app, "--size", options.size, parse_size, "of the picture (1024x768)")
      ->type_name("WxH");
  add_choice(app, "--variant", options.variant, variants, "configuration of the module (rgb-z)");
  add_choice(app, "--mode", options.drawing.style, styles, "what is drawn of the model (shaded)");
  add_background_option(app, options);
  app.add_option("--module", options.module_path, "renderer module to draw with")
      ->type_name("FILE");
  add_camera_options(app, options.camera);
  add_drawing_options(app, options.drawing);
  add_texture_options(app, options);
  add_line_options(app, options.drawing);
}

// Adds the limits and parses. False when the user only asked for help, which is then printed.
bool parse(CLI::App& app, Options& options, int argc, char** argv) {
  double megabytes = static_cast<double>(options.limits.memory_bytes >> 20);
  double triangles = static_cast<double>(options.limits.triangles);
  add_limit_options(app, options.limits, megabytes, triangles);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << app.help();
    return false;
  } catch (const CLI::ParseError& error) {
    refuse(error.what(), app.get_name());
  } catch (const std::invalid_argument& error) {
    refuse(error.what(), app.get_name());
  }
  options.limits.memory_bytes = static_cast<std::size_t>(megabytes) << 20;
  options.limits.triangles = static_cast<std::size_t>(triangles);
  if (options.drawing.opacity < 1 && !options.variant.direct_color)
    refuse("--opacity asks for blending, which the mapped variants do not do", app.get_name());
  return true;
}

}  // namespace

std::optional<Options> parse_options(int argc, char** argv, const std::string& default_module) {
  Options options;
  options.module_path = default_module;
  CLI::App app("Draws a 3D model into a picture.", "kvdraw");
  app.footer(commands_help());
  app.add_option("MODEL", options.model_paths,
                 "model files: OBJ, PLY, STL or glTF; - is standard input")
      ->required()
      ->type_name("");
  CLI::Option* info =
      app.add_flag("--info", options.info, "tell of the model on standard output, draw nothing");
  CLI::Option* output =
      app.add_option(
             "-o,--output", options.picture_path,
             "picture to write, PNG (required); of several, {model} and {n} in it stand for\n"
             "the model's name and the picture's number; - is standard output")
          ->type_name("FILE")
          ->excludes(info);
  app.add_flag("--stats", options.stats, "tell of counts and times on standard error")
      ->excludes(info);
  add_options(app, options);
  add_tile_options(app, options);
  CLI::Option* turntable =
      add_whole_number(app, "--turntable", options.frames, 1, most_frames,
                       "as many pictures, once around the model, in --framing steady")
          ->excludes(info);
  if (!parse(app, options, argc, argv)) return std::nullopt;
  if (!options.info && !*output) refuse("--output is required");
  if (*turntable && app.count("--framing") == 0) options.camera.framing = Framing::steady;
  if (!options.info)
    check_names(options.picture_path, options.model_paths,
                static_cast<std::size_t>(options.frames));
  check_tiles(options);
  return options;
}

std::optional<Options> parse_view_options(int argc, char** argv,
                                          const std::string& default_module) {
  Options options;
  options.module_path = default_module;
  options.camera.framing = Framing::steady;
  CLI::App app("Shows a 3D model in a window. The key h tells of the other keys.", "kvview");
  add_model(app, options);
  add_options(app, options);
  if (!parse(app, options, argc, argv)) return std::nullopt;
  check_tiles(options);
  return options;
}

}  // namespace kv
