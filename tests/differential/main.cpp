// The command line of a fuzz program: random calls in a row, or one of them printed and replayed.
#include <iostream>

#include "tests/differential/guarded_images.h"
#include "tests/differential/setting.h"

namespace {

using fuzz::Trial;

const char* const usage =
    " [--module FILE] (--seed N | [--from N] [--count N])\n"
    "  [--only TEXT] [--stop N]\n"
    "  --only: calls whose title contains TEXT\n"
    "  --stop: differences after which the batch ends (10)\n";

std::string event_difference(const model::Events& expected, const model::Events& got) {
  if (expected == got) return {};
  std::size_t i = 0;
  while (i < expected.size() && i < got.size() && expected[i] == got[i]) ++i;
  const auto text = [i](const model::Events& events) {
    return i < events.size() ? events[i] : std::string("nothing");
  };
  return "  event " + std::to_string(i) + " expected " + text(expected) + "\n    got " + text(got) +
         "\n";
}

/// What is wrong with a call, in words.
std::string differences(const KT_Renderer_Module& module, Trial& trial) {
  fuzz::Setting setting(module.make_renderer(nullptr), trial.scene);
  fuzz::events.clear();
  const model::Events expected = trial.draw_model(setting);
  const std::string look = model::look_of(trial.scene.rendition);
  trial.watch(setting);
  trial.draw_module(setting);
  if (model::look_of(trial.scene.rendition) != look || trial.scene.rendition->reference_count != 1)
    trial.found += "  the rendition was changed or is held\n";
  return trial.found + event_difference(expected, fuzz::events) +
         fuzz::image_difference("color", setting.color, setting.state.color) +
         fuzz::image_difference("depth", setting.depth, setting.state.depth);
}

}  // namespace

int main(int argc, char** argv) {
  std::string path = FUZZ_MODULE, only;
  std::uint64_t from = 1, count = 20000;
  int stop = 10;
  for (int i = 1; i < argc; i += 2) {
    const std::string option = argv[i], value = i + 1 < argc ? argv[i + 1] : "";
    if (option == "--module")
      path = value;
    else if (option == "--seed")
      from = std::stoull(value), count = 1;
    else if (option == "--from")
      from = std::stoull(value);
    else if (option == "--count")
      count = std::stoull(value);
    else if (option == "--only")
      only = value;
    else if (option == "--stop")
      stop = std::stoi(value);
    else
      return std::cerr << argv[0] << usage, 2;
  }
  KT_Renderer_Module module;
  std::string error;
  if (!module.load(path, error)) return std::cerr << error << "\n", 2;
  std::uint64_t drawn = 0;
  int differing = 0;
  for (std::uint64_t seed = from; seed < from + count && differing < stop; ++seed) {
    fuzz::guard_images_of(seed);
    const std::unique_ptr<Trial> trial = fuzz::FUZZ_FAMILY(seed);
    const std::string title = trial->scene.variant_name() + " " + trial->title();
    if (title.find(only) == std::string::npos) continue;
    ++drawn;
    if (count == 1)
      std::cout << title << "\n" << trial->scene.story() << trial->story() << std::flush;
    std::string found;
    try {
      found = differences(module, *trial);
    } catch (const std::exception& exception) {
      found = std::string("  ") + exception.what() + "\n";
    }
    if (found.empty()) continue;
    ++differing;
    std::cout << "seed " << seed << " " << title << "\n" << found;
  }
  std::cout << drawn << " calls drawn, " << differing << " differ\n";
  return differing != 0 || drawn == 0;
}
