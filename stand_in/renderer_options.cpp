// The plain settings of a renderer.
#include "host/renderer.h"

int KT_Renderer_Options::buffer_depth() const {
  return buffer_depth_;
}
KT_Color_System KT_Renderer_Options::color_system() const {
  return color_system_;
}
bool KT_Renderer_Options::alpha_blending() const {
  return alpha_blending_;
}
bool KT_Renderer_Options::local_coordinates() const {
  return local_coordinates_;
}
KT_Int_XY KT_Renderer_Options::window_origin() const {
  return window_origin_;
}
KT_Int_XY KT_Renderer_Options::window_size() const {
  return window_size_;
}
const KT_Palette& KT_Renderer_Options::palette() const {
  return palette_;
}
bool KT_Renderer_Options::backing_store() const {
  return backing_store_;
}
bool KT_Renderer_Options::supports_complex_clip() const {
  return supports_complex_clip_;
}

void KT_Renderer_Options::set_buffer_depth(int bits) {
  buffer_depth_ = bits;
}
void KT_Renderer_Options::set_backing_store(bool on) {
  backing_store_ = on;
}
void KT_Renderer_Options::set_supports_complex_clip(bool on) {
  supports_complex_clip_ = on;
}
void KT_Renderer_Options::set_color_system(KT_Color_System system) {
  color_system_ = system;
}
void KT_Renderer_Options::set_alpha_blending(bool on) {
  alpha_blending_ = on;
}
void KT_Renderer_Options::set_local_coordinates(bool on) {
  local_coordinates_ = on;
}

void KT_Renderer_Options::set_window(KT_Int_XY origin, KT_Int_XY size) {
  window_origin_ = origin;
  window_size_ = size;
}

void KT_Renderer_Options::set_palette(const KT_Palette& palette) {
  palette_ = palette;
}
