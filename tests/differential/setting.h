// A renderer of the module under test, brought into the state that a scene asks for.
#pragma once

#include "host/application.h"
#include "tests/differential/scene.h"

namespace fuzz {

/// The renderer, its images, and its state as the model knows it.
struct Setting {
  const Scene& scene;
  KT_Handle<KT_Renderer_Data> renderer;
  KT_Shared_Image color, depth;
  model::State state;

  Setting(const KT_Renderer_Module& module, const Scene& scene);
  Setting(const Setting&) = delete;

 private:
  static void create_frame_buffer(void* object, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image);
  KT_Option& option(const wchar_t* name) const;
  void set(const wchar_t* name, const KT_Option_Value& value) const { option(name).set(value); }
  template <class Function>
  Function* setter(const wchar_t* name) const {
    return reinterpret_cast<Function*>(option(name).value->pointer());
  }
  void rasterize_mask();
};

/// Says where `image` differs from what the model made of it, empty when nowhere.
std::string image_difference(const char* what, const KT_Shared_Image& image,
                             const model::Plane& expected);

/// Bytes of a pixel of that format.
int pixel_bytes(KT_Image_Format format);

}  // namespace fuzz
