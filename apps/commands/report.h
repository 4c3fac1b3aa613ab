// Reports of a model (--info) and of the program's own work (--stats).
#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "apps/draw/host_session.h"
#include "apps/scene/scene.h"

namespace kv {

// Counts, bounds, materials and textures as lines of text.
std::string info_of(const Model& model);

// Times of the stages of a run, by the clock on the wall.
class Stages {
 public:
  // What has passed since the stage before was done.
  void done(const char* stage);
  std::string text() const;

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point last_ = Clock::now();
  std::vector<std::pair<const char*, double>> milliseconds_;
};

// What was handed to the module, as lines of text.
std::string counts_of(const Content& content);

// How many pixels there are, and how many differ from the same picture without the model.
std::string covered_text(const Picture& picture, const Picture& empty);

}  // namespace kv
