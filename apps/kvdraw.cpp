// Draws a model through a renderer module and writes the picture.

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <sstream>
#include <string>

#include "apps/camera.h"
#include "apps/device_geometry.h"
#include "apps/errors.h"
#include "apps/host_session.h"
#include "apps/loader.h"
#include "apps/options.h"
#include "apps/picture_file.h"
#include "apps/scene.h"

namespace {

using namespace kv;

// The first of the places in KVDRAW_DEFAULT_MODULE that exists. Relative ones are meant from the
// folder of the program.
std::string default_module() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  std::istringstream places(KVDRAW_DEFAULT_MODULE);
  std::string first;
  for (std::string place; std::getline(places, place, ':');) {
    const std::string module = (program.parent_path() / place).lexically_normal().string();
    if (std::filesystem::exists(module, error)) return module;
    if (first.empty()) first = module;
  }
  return first;
}

void check_not_same_file(const Options& options) {
  struct stat model {};
  struct stat picture {};
  if (stat(options.model_path.c_str(), &model) != 0) return;
  if (stat(options.picture_path.c_str(), &picture) != 0) return;
  if (model.st_dev == picture.st_dev && model.st_ino == picture.st_ino)
    throw Failure(Exit_Code::usage, options.picture_path, "the picture would replace the model",
                  "name another picture");
}

Content content_of(const Scene& scene, View& view, const Drawing& drawing) {
  const auto opacity = static_cast<float>(drawing.opacity);
  const Style style = drawing.style;
  if (style == Style::hidden_line) view.leave_depth(hidden_line_offset);
  Content content;
  if (shows_faces(style))
    content.faces = device_geometry(scene, view, style == Style::shaded ? Mode::shaded : Mode::flat,
                                    opacity);
  if (shows_lines(style)) content.lines = device_lines(scene, view, drawing.lines.edges, opacity);
  if (style == Style::points) content.dots = device_dots(scene, view, opacity);
  return content;
}

void run(const Options& options) {
  check_not_same_file(options);
  // First of all, while there is one thread: loading forks.
  const Scene scene = make_scene(load_model(options.model_path, options.limits));
  Host_Session session(options.module_path, options.variant, options.size, options.drawing,
                       options.background);
  View view(options.camera, options.size.width, options.size.height, scene.model);
  session.draw(content_of(scene, view, options.drawing));
  write_picture_file(options.picture_path, session.read_picture());
}

int report(const Failure& failure) {
  std::fprintf(stderr, "%s\n", message_of(failure).c_str());
  return static_cast<int>(failure.code());
}

}  // namespace

int main(int argc, char** argv) {
  // A broken pipe or a limit on file sizes is an error to report, not an end of the program.
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
  std::string picture_path;
  try {
    const std::optional<Options> options = parse_options(argc, argv, default_module());
    if (!options) return 0;
    picture_path = options->picture_path;
    run(*options);
    return 0;
  } catch (const Failure& failure) {
    return report(failure);
  } catch (const std::bad_alloc&) {
    return report(
        {Exit_Code::output, picture_path, "there is no memory to draw it", "try a smaller --size"});
  } catch (const std::exception& error) {
    return report({Exit_Code::output, picture_path, error.what()});
  }
}
