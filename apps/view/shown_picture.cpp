// Keeps a scene for each way of loading the model, and a session for as long as only the camera
// moves.
#include "apps/view/shown_picture.h"

#include "apps/commands/command_words.h"
#include "apps/commands/content.h"
#include "apps/load/loader.h"
#include "apps/scene/camera.h"

namespace kv {
namespace {

std::vector<std::string> words_without_camera(Options options) {
  options.camera = {};
  return command_words(options);
}

}  // namespace

Live_Picture::Live_Picture(const Options& options) {
  scene_for(scenes_, options);  // first of all, while there is one thread: loading forks
  if (!options.background_picture.empty())
    background_ = load_image(options.background_picture, options.limits);
  draw(options);
}

const Scene& Live_Picture::scene_for(Scenes& scenes, const Options& options) {
  const Load_Choices choices = load_choices(options);
  const std::pair key{choices.textures, choices.polygons};
  const auto found = scenes.find(key);
  if (found != scenes.end()) return found->second;
  Scene scene = make_scene(load_model(options.model_path, options.limits, choices));
  return scenes.emplace(key, std::move(scene)).first->second;
}

void Live_Picture::reload(const Options& options) {
  Scenes fresh;
  drawn_scene_ = &scene_for(fresh, options);
  scenes_ = std::move(fresh);  // what is in it keeps its address
  drawn_as_.clear();
}

void Live_Picture::make_session(const Scene& scene, const Options& options) {
  auto session = std::make_unique<Host_Session>(options.module_path, options.variant, options.size,
                                                options.drawing, options.background);
  session->set_textures(scene.model);
  if (!background_.texels.empty()) session->set_background_picture(background_);
  session_ = std::move(session);
  drawn_as_ = words_without_camera(options);
  drawn_scene_ = &scene;
}

void Live_Picture::draw(const Options& options) {
  const Scene& scene = scene_for(scenes_, options);
  if (drawn_scene_ != &scene || drawn_as_ != words_without_camera(options))
    make_session(scene, options);
  View view(options.camera, options.size.width, options.size.height, scene.model);
  session_->draw(content_of(scene, view, options.drawing));
}

}  // namespace kv
