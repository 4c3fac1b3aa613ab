// The command line of kvdraw.
#pragma once

#include <optional>
#include <string>

#include "apps/camera.h"
#include "apps/device_geometry.h"
#include "apps/drawing.h"
#include "apps/loader.h"
#include "apps/option_text.h"
#include "apps/variant.h"

namespace kv {

struct Options {
  std::string model_path;
  std::string picture_path;
  std::string module_path;
  Size size;
  Variant variant = Variant::rgb_z;
  Camera_Options camera;
  Drawing drawing;
  Color background{0.93f, 0.94f, 0.95f, 1};
  Load_Limits limits;
};

// Nothing when the user only asked for help, which is then printed. Throws a Failure of
// Exit_Code::usage. `default_module` serves when no module is named.
std::optional<Options> parse_options(int argc, char** argv, const std::string& default_module);

}  // namespace kv
