#include "apps/options.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>

#include "apps/errors.h"

namespace kv {
namespace {

const std::map<std::string, Variant> variants = {
    {"rgb", Variant::rgb},
    {"rgb-z", Variant::rgb_z},
    {"rgb-alpha", Variant::rgb_alpha},
    {"rgb-alpha-z", Variant::rgb_alpha_z},
    {"mapped", Variant::mapped},
    {"mapped-z", Variant::mapped_z},
};
const std::map<std::string, Style> styles = {{"shaded", Style::shaded},
                                             {"flat", Style::flat},
                                             {"wireframe", Style::wireframe},
                                             {"hidden-line", Style::hidden_line},
                                             {"points", Style::points}};
const std::map<std::string, Edge_Choice> edge_choices = {{"all", Edge_Choice::all},
                                                         {"feature", Edge_Choice::feature}};
const std::map<std::string, int> palettes = {
    {"cube2", 2}, {"cube3", 3}, {"cube4", 4}, {"cube5", 5}, {"cube6", 6}};
const std::map<std::string, bool> clips = {{"circle", true}};
const std::map<std::string, Up_Axis> axes = {
    {"x", Up_Axis::x}, {"y", Up_Axis::y}, {"z", Up_Axis::z}};

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
      throw std::invalid_argument("'" + text + "' is no whole number from " +
                                  std::to_string(low) + " to " + std::to_string(high));
    return value;
  };
  return add_parsed<Number>(app, name, target, parse, help)->type_name("N");
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
  add_number(app, "--zoom", camera.zoom, 0.001, 1000, "1 shows the whole model (1)")
      ->type_name("F")
      ->group(group);
  add_number(app, "--distance", camera.distance, 0, 1000,
             "of the eye, 1 shows the whole model, 0 is its middle (1)")
      ->type_name("F")
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
  add_choice(app, "--clip", drawing.circle_clip, clips, "draw only inside this shape")
      ->group(group);
  app.add_flag("--merge", drawing.merge,
               "join overlapping faces like inks on the background; the module merges flat and\n"
               "one-coloured faces without depth")
      ->group(group);
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

void add_options(CLI::App& app, Options& options) {
  app.add_option("MODEL", options.model_path, "model file: OBJ, PLY, STL or glTF")
      ->required()
      ->type_name("");
  app.add_option("-o,--output", options.picture_path, "picture to write, PNG")
      ->required()
      ->type_name("FILE");
  add_parsed<Size>(app, "--size", options.size, parse_size, "of the picture (1024x768)")
      ->type_name("WxH");
  add_choice(app, "--variant", options.variant, variants, "configuration of the module (rgb-z)");
  add_choice(app, "--mode", options.drawing.style, styles, "what is drawn of the model (shaded)");
  add_parsed<Color>(app, "--background", options.background, parse_color, "(#edf0f2)")
      ->type_name("COLOR");
  app.add_option("--module", options.module_path, "renderer module to draw with")
      ->type_name("FILE");
  add_camera_options(app, options.camera);
  add_drawing_options(app, options.drawing);
  add_line_options(app, options.drawing);
}

[[noreturn]] void refuse(const std::string& what) {
  throw Failure(Exit_Code::usage, {}, what, "see kvdraw --help");
}

}  // namespace

std::optional<Options> parse_options(int argc, char** argv, const std::string& default_module) {
  Options options;
  options.module_path = default_module;
  double megabytes = static_cast<double>(options.limits.memory_bytes >> 20);
  double triangles = static_cast<double>(options.limits.triangles);
  CLI::App app("Draws a 3D model into a picture.", "kvdraw");
  add_options(app, options);
  add_limit_options(app, options.limits, megabytes, triangles);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << app.help();
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    refuse(error.what());
  } catch (const std::invalid_argument& error) {
    refuse(error.what());
  }
  options.limits.memory_bytes = static_cast<std::size_t>(megabytes) << 20;
  options.limits.triangles = static_cast<std::size_t>(triangles);
  if (options.drawing.opacity < 1 && !options.variant.direct_color)
    refuse("--opacity asks for blending, which the mapped variants do not do");
  return options;
}

}  // namespace kv
