// A renderer module at work: one window of one configuration, drawn into and read back.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "apps/draw/drawing.h"
#include "apps/draw/variant.h"
#include "apps/files/picture.h"
#include "apps/scene/device_geometry.h"
#include "apps/scene/device_lines.h"
#include "host/application.h"

namespace kv {

// What a picture is made of, in device coordinates.
struct Content {
  Device_Geometry faces{Mode::shaded};
  std::vector<Device_Line> lines;
  std::vector<Device_Dots> dots;
};

// What a module hands over to be shown: a rectangle of its colour image, in buffer coordinates, and
// where its left top corner goes in the window, y down.
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

  // Patterns and dithers repeat within so many pixels: parts begin at multiples.
  static constexpr int part_alignment = 16;

  Host_Session(const Host_Session&) = delete;  // the renderer knows the session by its address
  Host_Session& operator=(const Host_Session&) = delete;

 private:
  void configure();
  void configure_palette();
  void configure_merging();
  void configure_rendition();
  void clear();
  void draw_background_picture();
  void draw_picture(const std::function<void()>& drawing);
  KT_Option& option(const wchar_t* name);
  // Of what goes through `call_strip`.
  KT_Rendition strip_rendition() const;
  template <KT_Action whole, KT_Action in_parts, class Point, class... More>
  void call_strip(const KT_Rendition& rendition, std::span<const Point> points, More... more);
  void draw_faces(const Device_Geometry& geometry);
  void draw_hiding_faces(const Device_Geometry& geometry);
  void draw_strips(const KT_Rendition& rendition, const Device_Geometry& geometry);
  void draw_strip(const KT_Rendition& rendition, const Device_Geometry& geometry,
                  const Device_Strip& strip);
  void draw_textured_strip(const KT_Rendition& rendition, const Device_Geometry& geometry,
                           const Device_Strip& strip);
  void draw_lines(const std::vector<Device_Line>& lines);
  void draw_dots(const std::vector<Device_Dots>& dots);
  KT_Rendition line_rendition() const;
  void set_color(KT_Rendition& rendition, const KT_RGB32& color) const;
  template <KT_Action action, class... Arguments>
  void call(Arguments&&... arguments);
  [[noreturn]] void fail(const std::string& what, const std::string& hint = {}) const;
  static void present_image(void* session, const KT_DCI_Point* start, const KT_DCI_Point* end,
                            const KT_Shared_Image* image, int target_x, int target_y);
  // Behind the action: tells the session of a lack of memory, which the module cannot.
  static void create_frame_buffer(void* session, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image);

  std::string module_path_;
  Variant variant_;
  Size size_;
  Drawing drawing_;
  KT_RGB32 background_;
  KT_Palette palette_;  // null unless colours are mapped
  bool out_of_memory_ = false;
  bool in_parts_ = false;           // strips and lines go through the actions of double precision
  KT_Int_XY origin_;                // of the frame buffer, in the coordinates of the picture
  KT_Int_Rectangle part_;           // what is drawn and read of the picture
  std::vector<KT_Point_D> points_;  // of one call
  std::vector<float> even_w_;       // of one call, all 1
  Size picture_size_;
  Image background_picture_;                             // empty: none
  std::vector<KT_Handle<KT_Material_Object>> textures_;  // by material of the model
  Window window_;                                        // of the presentation under way
  // In this order: the module goes last.
  KT_Renderer_Module module_;
  KT_Handle<KT_Renderer_Data> renderer_;
  KT_Rendition rendition_;
};

}  // namespace kv
