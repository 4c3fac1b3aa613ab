// The picture that a viewer shows, drawn again and again. Between drawings it keeps what does not
// change: the model, its textures, the module at work.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apps/commands/options.h"
#include "apps/draw/host_session.h"
#include "apps/scene/scene.h"

namespace kv {

// All members throw what loading and drawing throw; then the picture stays as it was.
class Live_Picture {
 public:
  // Loads the model and the background, and draws.
  explicit Live_Picture(const Options& options);

  void draw(const Options& options);
  // Takes the model from its file again, for the next drawing.
  void reload(const Options& options);

  Picture read() { return session_->read_picture(); }
  void present(const Host_Session::Window& window) { session_->present(window); }
  // What is drawn otherwise than the model file says.
  const std::vector<std::string>& warnings() const { return drawn_scene_->model.warnings; }
  std::size_t triangles() const { return triangle_count(drawn_scene_->model); }

 private:
  using Scenes = std::map<std::pair<bool, bool>, Scene>;  // by what was asked of the loader

  static const Scene& scene_for(Scenes& scenes, const Options& options);
  void make_session(const Scene& scene, const Options& options);

  Scenes scenes_;
  Image background_;
  std::unique_ptr<Host_Session> session_;
  std::vector<std::string> drawn_as_;   // what the session was made for
  const Scene* drawn_scene_ = nullptr;  // the last one that was drawn or is to be
};

}  // namespace kv
