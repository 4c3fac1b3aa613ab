// Draws a model through a renderer module and writes the picture.

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "apps/camera.h"
#include "apps/commands.h"
#include "apps/content.h"
#include "apps/default_module.h"
#include "apps/errors.h"
#include "apps/host_session.h"
#include "apps/loader.h"
#include "apps/options.h"
#include "apps/picture_file.h"
#include "apps/report.h"
#include "apps/scene.h"
#include "apps/tile_renderer.h"

namespace {

using namespace kv;

void check_not_same_file(const Options& options) {
  struct stat model {};
  struct stat picture {};
  if (stat(options.model_path.c_str(), &model) != 0) return;
  if (stat(options.picture_path.c_str(), &picture) != 0) return;
  if (model.st_dev == picture.st_dev && model.st_ino == picture.st_ino)
    throw Failure(Exit_Code::usage, options.picture_path, "the picture would replace the model",
                  "name another picture");
}

void warn(const std::string& path, const std::string& what) {
  const std::string line = one_line(path) + ": warning: " + one_line(what);
  std::fprintf(stderr, "kvdraw: %s\n", line.c_str());
}

void tell(const std::string& lines) {
  std::fputs(lines.c_str(), stderr);
}

void run(const Options& options) {
  Stages stages;
  if (!options.info) check_not_same_file(options);
  // First of all, while there is one thread: loading forks.
  const Scene scene =
      make_scene(load_model(options.model_path, options.limits, load_choices(options)));
  stages.done("loading");
  if (options.info) {
    std::printf("%s\n%s", one_line(options.model_path).c_str(), info_of(scene.model).c_str());
    if (std::fflush(stdout) != 0)
      throw Failure(Exit_Code::output, "standard output", "cannot be written");
    return;
  }
  Image background;
  if (!options.background_picture.empty())
    background = load_image(options.background_picture, options.limits);
  for (const std::string& warning : scene.model.warnings) warn(options.model_path, warning);
  const Tile_Grid grid{options.size, options.tile.value_or(options.size)};
  const Size frame = options.tile ? frame_size(grid) : options.size;
  Host_Session session(options.module_path, options.variant, frame, options.drawing,
                       options.background);
  session.set_textures(scene.model);
  if (!background.texels.empty()) session.set_background_picture(std::move(background));
  View view(options.camera, options.size.width, options.size.height, scene.model);
  Content content = content_of(scene, view, options.drawing);
  stages.done("preparing");
  if (options.tile) {
    const std::string counts = counts_of(content);
    write_in_tiles(options.picture_path, session, std::move(content), grid, options.tile_index,
                   options.drawing.lines.width);
    stages.done("drawing");
    if (options.stats) tell(counts + stages.text());
    return;
  }
  session.draw(content);
  stages.done("drawing");
  const Picture picture = session.read_picture();
  write_picture_file(options.picture_path, picture);
  stages.done("writing");
  if (!options.stats) return;
  session.draw({});
  tell(counts_of(content) + covered_text(picture, session.read_picture()) + stages.text());
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
    if (const std::optional<int> code = run_command(argc, argv)) return *code;
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
