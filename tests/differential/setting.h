// A renderer of the module under test, brought into the state that a scene has, and a random call
// of it.
#pragma once

#include <memory>

#include "host/application.h"
#include "tests/differential/recorder.h"
#include "tests/differential/scene.h"

namespace fuzz {

/// The renderer, its images, and its state as the model has it.
struct Setting {
  const Scene& scene;
  KT_Handle<KT_Renderer_Data> renderer;
  KT_Shared_Image color, depth;
  model::State state;

  Setting(KT_Handle<KT_Renderer_Data> renderer, const Scene& scene);
  Setting(const Setting&) = delete;

 private:
  static void create_frame_buffer(void* object, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image);
  KT_Option& option(const wchar_t* name) const;
  template <class Argument>
  void call_setter(const wchar_t* name, Argument argument) const {
    void* const setter = option(name).value->pointer();
    reinterpret_cast<void (*)(KT_Renderer_Data*, Argument)>(setter)(renderer.get(), argument);
  }
  void make_mask();
};

/// Where `image` differs from what the model made of it, in words; empty when nowhere.
std::string image_difference(const char* what, const KT_Shared_Image& image,
                             const model::Plane& expected);

/// Calls an action of points, with colours by its kind.
template <class Point>
void call_action(const KT_Renderer_Data& renderer, KT_Action action, model::Kind kind,
                 const KT_Rendition& r, int count, const Point* points, const KT_RGB32* colors,
                 bool single_color) {
  const KT_Action_Record& record = renderer.actions[action];
  auto* const object = static_cast<KT_Renderer_Data*>(record.object);
  if (kind == model::Kind::flat)
    reinterpret_cast<korvel::Strip_Routine<Point>*>(record.function)(object, r, count, points);
  else if (kind == model::Kind::colorized)
    reinterpret_cast<korvel::Colorized_Routine<Point>*>(record.function)(object, r, count, points,
                                                                         colors, single_color);
  else
    reinterpret_cast<korvel::Gouraud_Routine<Point>*>(record.function)(object, r, count, points,
                                                                       colors);
}

/// A random call, all of it from its seed.
struct Trial {
  Random random;
  Scene scene;

  explicit Trial(std::uint64_t seed) : random(seed), scene(seed, random) {}
  virtual ~Trial() = default;

  virtual std::string title() const = 0;
  /// What `title` and the scene's story leave out.
  virtual std::string story() const = 0;
  /// Draws on the model's images and tells what is to pass to the host; other differences in words
  /// go to `found`.
  virtual model::Events draw_model(Setting&) = 0;
  /// Binds what records calls to the action table.
  virtual void watch(Setting&) {}
  virtual void draw_module(Setting&) = 0;
  std::string found;
  std::vector<KT_Shared_Image> read_back;  ///< what the module has left beside the frame images
};
using Make_Trial = std::unique_ptr<Trial>(std::uint64_t seed);
Make_Trial make_triangles, make_textures, make_lines, make_small, make_frame_buffer, make_tiling;

}  // namespace fuzz
