// A renderer module at work: one window of one configuration, drawn into and read back.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "apps/draw/canvas.h"
#include "apps/draw/face_drawing.h"
#include "apps/files/picture.h"
#include "apps/scene/device_geometry.h"
#include "apps/scene/device_lines.h"

namespace kv {

// What a picture is made of, in device coordinates.
struct Content {
  Device_Geometry faces{Mode::shaded};
  std::vector<Device_Line> lines;
  std::vector<Device_Dot> dots;
};

// What a module hands over to be shown: a rectangle of its colour image, in buffer coordinates, and
// where its top left corner goes in the window, y down.
struct Presented {
  const KT_Shared_Image& image;
  KT_Int_Rectangle rectangle;
  int target_x, target_y;
  const KT_Palette& palette;  // null unless the image is mapped
};

// All members throw a Failure of Exit_Code::module when the module does not do its part, and
// std::bad_alloc when the picture is too large for the memory.
class Host_Session {
 public:
  Host_Session(const std::string& module_path, const Variant& variant, const Size& size,
               const Drawing& drawing, const Color& background);
  Host_Session(const Host_Session&) = delete;  // the renderer holds the session's address
  Host_Session& operator=(const Host_Session&) = delete;

  // The textures that content names by the model's materials.
  void set_textures(const Model& model);
  // A picture behind the content, scaled to cover the whole picture, in place of the background's
  // colour.
  void set_background_picture(Image image);
  // Turns to a part of a larger picture, given in its device coordinates. The part with a margin of
  // `part_alignment` to the right and above must fit the size of the session.
  void show_part(const KT_Int_Rectangle& part, const Size& picture);
  // Clears the window to the background and draws the content.
  void draw(const Content& content);
  // The same with calls that `drawing` makes by itself.
  using Drawing_By_Hand = std::function<void(KT_Renderer_Data&, const KT_Rendition&)>;
  void draw_by_hand(const Drawing_By_Hand& drawing);
  Picture read_picture();
  // Lets the module hand the whole picture over, in one piece or several.
  using Window = std::function<void(const Presented&)>;
  void present(const Window& window);

 private:
  void draw_picture(const std::function<void()>& drawing);
  static void present_image(void* session, const KT_DCI_Point* start, const KT_DCI_Point* end,
                            const KT_Shared_Image* image, int target_x, int target_y);

  Configuration configuration_;
  Textures textures_;
  Image background_picture_;  // empty: none
  Window window_;             // of the last presentation
  Renderer renderer_;
  Canvas canvas_;
};

}  // namespace kv
