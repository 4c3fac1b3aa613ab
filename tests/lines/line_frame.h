// A renderer of the module with a small frame, whose pixels can be looked at as a picture.
#pragma once

#include <string>
#include <vector>

#include "host/application.h"

/// The six configurations that lines are drawn in.
struct Configuration {
  KT_Color_System colors = KT_Color_System::direct;
  bool depth = false;
  bool alpha = false;
};

class Line_Frame {
 public:
  static constexpr std::uint32_t paper = 0x55555555;
  static constexpr std::uint16_t far = 60000;

  Line_Frame(const Configuration& configuration, int width, int height);
  Line_Frame(const Line_Frame&) = delete;

  KT_Renderer_Data& renderer() { return *renderer_; }
  KT_Rendition& rendition() { return rendition_; }
  void set_clip(const KT_Int_Rectangle& clip) {
    rendition_.set_hard_clip_unrestricted(clip, false);
  }
  void set_color(std::uint32_t word) { rendition_.set_color(KT_RGB32::from_word(word), false); }
  void set_antialiased();
  void set_depth(std::uint8_t write, unsigned test);

  template <KT_Action action, class... Arguments>
  void call(Arguments&&... arguments) {
    renderer_->actions.call<action>(rendition_, std::forward<Arguments>(arguments)...);
  }

  /// Makes everything paper, as far away as `far`.
  void clear();
  std::uint32_t color(int x, int y) const { return color_->row<std::uint32_t>(y)[x]; }
  std::uint16_t depth(int x, int y) const { return depth_->row<std::uint16_t>(y)[x]; }
  /// Rows of a rectangle from the top down, a character a pixel: '.' for paper, '#' for else.
  std::vector<std::string> picture(const KT_Int_Rectangle& of) const;

 private:
  static void create_frame_buffer(void* object, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image);

  KT_Renderer_Module module_;
  KT_Handle<KT_Renderer_Data> renderer_;
  KT_Rendition rendition_;
  KT_Shared_Image color_, depth_;
};
