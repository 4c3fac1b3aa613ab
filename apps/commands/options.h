// The command line of kvdraw.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/common/option_text.h"
#include "apps/draw/drawing.h"
#include "apps/draw/variant.h"
#include "apps/load/loader.h"
#include "apps/scene/camera.h"
#include "apps/scene/device_geometry.h"

namespace kv {

struct Options {
  std::vector<std::string> model_paths;  // of kvdraw
  std::string model_path;                // the one at hand; "-": standard input
  std::string picture_path;              // before drawing, a pattern of names; "-": standard output
  int frames = 1;                        // of a turn around the model
  std::string module_path;
  Size size;
  std::optional<Size> tile;       // the picture is drawn in tiles of this size
  std::optional<int> tile_index;  // of these, one alone
  Variant variant = Variant::rgb_z;
  Camera_Options camera;
  Drawing drawing;
  Color background{0.93f, 0.94f, 0.95f, 1};
  std::string background_picture;  // drawn over the colour; empty: none
  bool textures = true;
  bool info = false;    // print what the model holds and draw nothing
  bool stats = false;   // print counts and times
  bool strict = false;  // a warning is a failure
  Load_Limits limits;
};

// Nothing when only help was requested, which is then printed. Throws a Failure of
// Exit_Code::usage. `default_module` serves when no module is named.
std::optional<Options> parse_options(int argc, char** argv, const std::string& default_module);
// The same for kvview, which names no picture. Its model keeps its size while it turns.
std::optional<Options> parse_view_options(int argc, char** argv, const std::string& default_module);

}  // namespace kv
