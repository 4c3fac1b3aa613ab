// The command lines of kvdraw and kvview: the options of a picture, those of each program, and what
// may not go together.
#include "apps/commands/options.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "apps/commands/batch.h"
#include "apps/commands/command_line.h"
#include "apps/commands/commands.h"
#include "apps/commands/option_table.h"
#include "apps/common/errors.h"
#include "apps/draw/tiles.h"

namespace kv {
namespace {

constexpr int most_frames = 100000;

[[noreturn]] void refuse(const std::string& what, const std::string& program = "kvdraw") {
  throw Failure(Exit_Code::usage, {}, what, "see " + program + " --help");
}

Size parse_tile(const std::string& text) {
  const bool square = text.find('x') == std::string::npos;
  const std::optional<Size> tile = find_size(square ? text + "x" + text : text);
  if (!tile || std::max(tile->width, tile->height) > largest_side ||
      std::min(tile->width, tile->height) < smallest_tile_side)
    throw std::invalid_argument("'" + text + "' is no size of tiles; write N or WIDTHxHEIGHT, " +
                                "each from " + std::to_string(smallest_tile_side) + " to " +
                                std::to_string(largest_side));
  return *tile;
}

void add_tile_options(CLI::App& app, Options& options) {
  Option_Group group(app, "Pictures larger than a frame buffer");
  group.parsed(
      "--tile", [&options](const std::string& text) { options.tile = parse_tile(text); },
      [] { return std::string(); }, "N|WxH",
      "draw tile by tile, each in a frame buffer of this size");
  group.number("--tile-index", options.tile_index, 0, std::numeric_limits<int>::max(), "I",
               "draw one tile alone into its own file, for kvdraw join; 0 is the top left one");
}

// Numbers as the user counts them.
struct Limit_Options {
  double megabytes, triangles;
};

void add_limit_options(CLI::App& app, Load_Limits& limits, Limit_Options& numbers) {
  Option_Group group(app, "Limits of loading");
  group.number("--load-seconds", limits.seconds, 0.1, 86400.0, "S", "time to load the model");
  group.number("--load-memory", numbers.megabytes, 64.0, double{1 << 20}, "MB",
               "memory to load the model in");
  group.number("--max-triangles", numbers.triangles, 1.0, 100e6, "N", "largest model accepted");
}

// Adds the options of both programs and parses. False when only help was requested, which is then
// printed.
bool parse(CLI::App& app, Options& options, int argc, char** argv) {
  Limit_Options numbers{static_cast<double>(options.limits.memory_bytes >> 20),
                        static_cast<double>(options.limits.triangles)};
  add_picture_options(app, options);
  app.add_option("--module", options.module_path, "renderer module to draw with")
      ->type_name("FILE");
  add_limit_options(app, options.limits, numbers);
  if (!parse_command_line(app, argc, argv)) return false;
  options.limits.memory_bytes = static_cast<std::size_t>(numbers.megabytes) << 20;
  options.limits.triangles = static_cast<std::size_t>(numbers.triangles);
  if (options.drawing.opacity < 1 && !options.variant.direct_color)
    refuse("--opacity asks for blending, which the mapped variants do not do", app.get_name());
  return true;
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
  const std::string size = text_of(options.size);
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
      app.add_flag("--info", options.info, "print what the model holds and draw nothing");
  CLI::Option* output =
      app.add_option(
             "-o,--output", options.picture_path,
             "picture to write, PNG (required); of several, {model} and {n} in it stand for\n"
             "the model's name and the picture's number; - is standard output")
          ->type_name("FILE")
          ->excludes(info);
  app.add_flag("--stats", options.stats, "print counts and times on standard error")
      ->excludes(info);
  app.add_flag("--strict", options.strict,
               "exit with 1 after a warning, also of a picture in which nothing is seen")
      ->excludes(info);
  CLI::Option* turntable =
      Option_Group(app)
          .number("--turntable", options.frames, 1, most_frames, "N",
                  "as many pictures, once around the model, in --framing steady")
          ->excludes(info);
  add_tile_options(app, options);
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
  CLI::App app("Shows a 3D model in a window. The key h lists the other keys.", "kvview");
  app.add_option("MODEL", options.model_path, "model file: OBJ, PLY, STL or glTF")
      ->required()
      ->type_name("");
  if (!parse(app, options, argc, argv)) return std::nullopt;
  check_tiles(options);
  return options;
}

}  // namespace kv
