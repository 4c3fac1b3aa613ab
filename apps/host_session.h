// A renderer module at work: one window of one configuration, drawn into and read back.
#pragma once

#include <string>

#include "apps/device_geometry.h"
#include "apps/device_lines.h"
#include "apps/drawing.h"
#include "apps/picture.h"
#include "apps/variant.h"
#include "host/application.h"

namespace kv {

// What a picture is made of, in device coordinates.
struct Content {
  Device_Geometry faces{Mode::shaded};
  std::vector<Device_Line> lines;
  std::vector<Device_Dots> dots;
};

// All members throw a Failure of Exit_Code::module when the module does not do its part, and
// std::bad_alloc when the picture is too large for the memory.
class Host_Session {
 public:
  Host_Session(const std::string& module_path, const Variant& variant, const Size& size,
               const Drawing& drawing, const Color& background);

  // Clears the window to the background and draws the content.
  void draw(const Content& content);
  Picture read_picture();

  Host_Session(const Host_Session&) = delete;  // the renderer knows the session by its address
  Host_Session& operator=(const Host_Session&) = delete;

 private:
  void configure();
  void configure_palette();
  void configure_merging();
  void configure_rendition();
  void clear();
  KT_Option& option(const wchar_t* name);
  void draw_faces(const Device_Geometry& geometry);
  void draw_hiding_faces(const Device_Geometry& geometry);
  void draw_strips(const KT_Rendition& rendition, const Device_Geometry& geometry);
  void draw_lines(const std::vector<Device_Line>& lines);
  void draw_dots(const std::vector<Device_Dots>& dots);
  KT_Rendition line_rendition() const;
  void set_color(KT_Rendition& rendition, const KT_RGB32& color) const;
  template <KT_Action action, class... Arguments>
  void call(Arguments&&... arguments);
  [[noreturn]] void fail(const std::string& what, const std::string& hint = {}) const;
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
  // In this order: the module goes last.
  KT_Renderer_Module module_;
  KT_Handle<KT_Renderer_Data> renderer_;
  KT_Rendition rendition_;
};

}  // namespace kv
