// A session holds what lasts from picture to picture. Its parts do the work: the renderer and its
// configuration, faces, lines, the background.
#include "apps/draw/host_session.h"

#include <algorithm>
#include <utility>

#include "apps/draw/background.h"
#include "apps/draw/line_drawing.h"
#include "apps/draw/texture_materials.h"
#include "apps/load/image_scale.h"

namespace kv {

Host_Session::Host_Session(const std::string& module_path, const Variant& variant, const Size& size,
                           const Drawing& drawing, const Color& background)
    : configuration_{variant, size, drawing, device_color(background),
                     variant.direct_color ? KT_Palette() : cube_palette(drawing.cube_steps)},
      renderer_(module_path),
      canvas_{renderer_, configuration_, Frame::of_whole(size),
              rendition_of(configuration_, Frame::of_whole(size))} {
  configure(renderer_, configuration_);
}

// Blending makes the mapped variants leave out what a texture does not show at all.
void Host_Session::set_textures(const Model& model) {
  textures_ = texture_materials(model, configuration_.drawing.textures.filter,
                                configuration_.variant.direct_color);
  const bool cuts_out = std::any_of(model.textures.begin(), model.textures.end(),
                                    [](const Texture& texture) { return texture.sees_through; });
  if (configuration_.variant.direct_color || !cuts_out) return;
  renderer_.options().set_alpha_blending(true);
  renderer_.establish();
}

void Host_Session::set_background_picture(Image image) {
  const KT_RGB32& paper = configuration_.background;
  background_picture_ = flattened(std::move(image), {paper.red, paper.green, paper.blue, 255});
}

void Host_Session::show_part(const KT_Int_Rectangle& part, const Size& picture) {
  canvas_.frame = Frame::of_part(part, picture);
  turn_to(canvas_.frame, renderer_, configuration_);
  canvas_.rendition = rendition_of(configuration_, canvas_.frame);
}

void Host_Session::draw(const Content& content) {
  draw_picture([&] {
    Face_Drawing faces(canvas_, textures_);
    if (configuration_.drawing.style == Style::hidden_line)
      faces.draw_hiding(content.faces);
    else
      faces.draw(content.faces);
    draw_lines(canvas_, content.lines);
    draw_dots(canvas_, content.dots);
  });
}

void Host_Session::draw_by_hand(const Drawing_By_Hand& drawing) {
  draw_picture([&] { drawing(renderer_.data(), canvas_.rendition); });
}

void Host_Session::draw_picture(const std::function<void()>& drawing) {
  KD_Reset_Undrawn_Count();
  renderer_.data().begin_picture_all(nullptr);
  clear(canvas_);
  draw_background(canvas_, background_picture_);
  drawing();
  renderer_.data().end_picture_all();
  if (const unsigned undrawn = KD_Undrawn_Count(); undrawn > 0)
    renderer_.fail("the framework left " + std::to_string(undrawn) + " primitives undrawn");
}

Picture Host_Session::read_picture() {
  return read_back(canvas_);
}

void Host_Session::present(const Window& window) {
  window_ = window;
  renderer_.data().actions.bind<KT_Action::Present_Image>(this, present_image);
  renderer_.data().update_all(Frame::of_whole(configuration_.size).part);
}

void Host_Session::present_image(void* object, const KT_DCI_Point* start, const KT_DCI_Point* end,
                                 const KT_Shared_Image* image, int target_x, int target_y) {
  const Host_Session& session = *static_cast<Host_Session*>(object);
  session.window_({*image,
                   {start->x, end->x, end->y, start->y},
                   target_x,
                   target_y,
                   session.configuration_.palette});
}

}  // namespace kv
