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

#include "apps/commands/batch.h"
#include "apps/commands/blank.h"
#include "apps/commands/commands.h"
#include "apps/commands/content.h"
#include "apps/commands/options.h"
#include "apps/commands/report.h"
#include "apps/common/errors.h"
#include "apps/common/progress.h"
#include "apps/draw/default_module.h"
#include "apps/draw/host_session.h"
#include "apps/draw/tile_renderer.h"
#include "apps/files/picture_file.h"
#include "apps/load/loader.h"
#include "apps/scene/camera.h"
#include "apps/scene/scene.h"

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

int warnings = 0;  // of the whole run

void warn(const std::string& path, const std::string& what) {
  ++warnings;
  const std::string line = one_line(path) + ": warning: " + one_line(what);
  std::fprintf(stderr, "kvdraw: %s\n", line.c_str());
}

void warn_if_blank(const std::string& path, const std::string& reason) {
  if (!reason.empty()) warn(path, "nothing of the model is seen: " + reason);
}

void tell(const std::string& lines) {
  std::fputs(lines.c_str(), stderr);
}

// Draws one frame of a model into `options.picture_path`.
void draw_frame(const Options& options, const Scene& scene, Host_Session& session, Stages& stages) {
  check_not_same_file(options);
  View view(options.camera, options.size.width, options.size.height, scene.model);
  Content content = content_of(scene, view, options.drawing);
  stages.done("preparing");
  if (options.tile) {
    const std::string counts = counts_of(content);
    warn_if_blank(options.model_path, blank_reason(content, options.drawing, options.size));
    write_in_tiles(options.picture_path, session, std::move(content), {options.size, *options.tile},
                   options.tile_index, options.drawing.lines.width);
    stages.done("drawing");
    if (options.stats) tell(counts + stages.text());
    return;
  }
  session.draw(content);
  stages.done("drawing");
  const Picture picture = session.read_picture();
  write_picture_file(options.picture_path, picture);
  stages.done("writing");
  const auto empty = [&session] {
    session.draw({});
    return session.read_picture();
  };
  warn_if_blank(options.model_path, blank_reason(content, options.drawing, picture,
                                                 options.background_picture.empty(), empty));
  if (options.stats) tell(counts_of(content) + covered_text(picture, empty()) + stages.text());
}

void tell_info(const Options& options, const Model& model) {
  std::printf("%s\n%s", one_line(options.model_path).c_str(), info_of(model).c_str());
  if (std::fflush(stdout) != 0)
    throw Failure(Exit_Code::output, "standard output", "cannot be written");
}

// All frames of one model; `first_number` is that of the first picture.
void draw_model(Options options, const Picture_Names& names, std::size_t first_number) {
  Stages stages;
  std::optional<Standard_Input> input;
  if (options.model_path == "-") input.emplace(options.limits.memory_bytes);
  // First of all, while there is one thread: loading forks.
  const Scene scene = make_scene(load_model(input ? input->path() : options.model_path,
                                            options.limits, load_choices(options)));
  stages.done("loading");
  if (options.info) return tell_info(options, scene.model);
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
  const double first_azimuth = options.camera.azimuth;
  Progress progress("frame", options.frames);
  for (int i = 0; i < options.frames; ++i) {
    options.camera.azimuth = first_azimuth + 360.0 * i / options.frames;
    options.picture_path = names.name(options.model_path, first_number + static_cast<unsigned>(i));
    draw_frame(options, scene, session, stages);
    progress.step();
  }
}

int report(const Failure& failure) {
  std::fprintf(stderr, "%s\n", message_of(failure).c_str());
  return static_cast<int>(failure.code());
}

// Runs `work` and reports what it throws; returns the exit code.
template <class Work>
int reported(const std::string& picture_path, Work work) {
  try {
    return work();
  } catch (const Failure& failure) {
    return report(failure);
  } catch (const std::bad_alloc&) {
    return report(
        {Exit_Code::output, picture_path, "there is no memory to draw it", "try a smaller --size"});
  } catch (const std::exception& error) {
    return report({Exit_Code::output, picture_path, error.what()});
  }
}

// A batch goes on after a failure, and reports at the end how many models failed.
int draw_all(const Options& options) {
  const std::size_t models = options.model_paths.size();
  const auto frames = static_cast<std::size_t>(options.frames);
  const Picture_Names names(options.picture_path, models * frames);
  std::size_t failed = 0;
  int code = 0;
  for (std::size_t i = 0; i < models; ++i) {
    Options one = options;
    one.model_path = options.model_paths[i];
    const int its_code = reported(options.picture_path, [&] {
      const int before = warnings;
      draw_model(one, names, 1 + i * frames);
      return options.strict && warnings > before ? static_cast<int>(Exit_Code::input) : 0;
    });
    if (its_code == 0) continue;
    ++failed;
    code = its_code;
  }
  if (models == 1 || failed == 0) return code;
  std::fprintf(stderr, "kvdraw: %zu of %zu failed\n", failed, models);
  return static_cast<int>(Exit_Code::input);
}

}  // namespace

int main(int argc, char** argv) {
  // A broken pipe or a limit on file sizes is an error to report, not an end of the program.
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
  return reported({}, [&] {
    if (const std::optional<int> code = run_command(argc, argv)) return *code;
    const std::optional<Options> options = parse_options(argc, argv, default_module());
    return options ? draw_all(*options) : 0;
  });
}
